#include "TAVmainwindow.h"
#include "applicationtitle.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tavoline"));
    QApplication::setOrganizationDomain(QStringLiteral("tavoline.example"));
    QApplication::setApplicationName(QLatin1String(applicationTitle));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/src/images/paragraph.png")));
    auto *window = new TAVMainWindow; // deletes itself when it is closed
    window->show();
    return QApplication::exec();
}
