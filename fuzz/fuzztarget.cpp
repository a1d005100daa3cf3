// What the targets share: nothing is printed, and the input stands in a file that is only in memory.

#include "fuzztarget.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

std::ostringstream &collected()
{
    static std::ostringstream stream;
    return stream;
}
} // namespace

void silence()
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::cerr.rdbuf(nullptr);
    qInstallMessageHandler(ignoreMessage);
}

void require(bool kept, const char *promise)
{
    if (!kept) {
        std::fprintf(stderr, "Broken promise: %s\n", promise);
        std::abort();
    }
}

int InputBytes::byte()
{
    if (bytes.empty()) {
        return 0;
    }
    const uchar value = bytes.front();
    bytes.remove_prefix(1);
    return value;
}

MemoryFile::MemoryFile(std::string_view content) : descriptor(memfd_create("input", MFD_CLOEXEC))
{
    require(write(descriptor, content.data(), content.size()) == ssize_t(content.size()), "a file can be made");
}

MemoryFile::~MemoryFile()
{
    close(descriptor);
}

QString MemoryFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
}

CerrText::CerrText()
{
    collected().str({});
    std::cerr.clear();
    std::cerr.rdbuf(collected().rdbuf());
}

CerrText::~CerrText()
{
    std::cerr.rdbuf(nullptr);
}

QByteArray CerrText::text() const
{
    return QByteArray::fromStdString(collected().str());
}
