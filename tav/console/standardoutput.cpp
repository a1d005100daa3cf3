#include "standardoutput.h"

#include "commandline.h"
#include "outputfile.h"

#include <QByteArray>

#include <unistd.h>
#include <utility>

namespace
{
constexpr int longestWait = 1 << 16; // bytes

QByteArray waiting;

OutputFile &standardOutput()
{
    static OutputFile file(STDOUT_FILENO);
    return file;
}
} // namespace

void print(const QString &text)
{
    waiting += text.toUtf8();
    if (waiting.size() >= longestWait) {
        sendPrinted();
    }
}

void sendPrinted()
{
    standardOutput().write(std::exchange(waiting, {}));
}

void flushStandardOutput()
{
    sendPrinted();
    if (!standardOutput().tookEverything()) {
        throw cannotWrite(standardStream, standardOutput().reason());
    }
}
