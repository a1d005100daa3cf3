#include "standardoutput.h"

#include "commandline.h"
#include "outputfile.h"

#include <QByteArray>

#include <unistd.h>
#include <utility>

namespace
{
constexpr int bufferSize = 1 << 16;

QByteArray buffer;

OutputFile &standardOutput()
{
    static OutputFile file(STDOUT_FILENO);
    return file;
}
} // namespace

void print(const QString &text)
{
    buffer += text.toUtf8();
    if (buffer.size() >= bufferSize) {
        sendPrinted();
    }
}

void sendPrinted()
{
    standardOutput().write(std::exchange(buffer, {}));
}

void flushStandardOutput()
{
    sendPrinted();
    if (!standardOutput().tookEverything()) {
        throw cannotWrite(standardStream, standardOutput().reason());
    }
}
