#include "TAVmainwindow.h"
#include "applicationtitle.h"
#include "heap.h"
#include "outputfile.h"

#include <QApplication>
#include <QIcon>

#include <csignal>

int main(int argc, char *argv[])
{
    useLargeHeapSteps();
    // SIGPIPE would end the program when the reader of standard error, or of a FIFO that a list is saved into, leaves.
    std::signal(SIGPIPE, SIG_IGN);
    failBeyondFileSizeLimit();
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tavoline"));
    QApplication::setOrganizationDomain(QStringLiteral("tavoline.example"));
    QApplication::setApplicationName(QLatin1String(applicationTitle));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/src/images/paragraph.png")));
    auto *window = new TAVMainWindow; // deletes itself when it is closed
    window->show();
    return QApplication::exec();
}
