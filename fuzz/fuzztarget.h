// Shared by all targets. A target is a source file with LLVMFuzzerInitialize(), which is called once, and
// LLVMFuzzerTestOneInput(), which is called for every input. They are called by libFuzzer, or in a build without it,
// by replay.cpp.
#ifndef TAVOLINE_FUZZ_FUZZTARGET_H
#define TAVOLINE_FUZZ_FUZZTARGET_H

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// Silences the code under test and makes the application object. A QApplication uses the offscreen platform.
template<typename Application> int startTarget(int *argc, char ***argv);

/// Prints @p promise and aborts unless @p kept.
void require(bool kept, const char *promise);

/// The bytes of an input, taken from its beginning.
class InputBytes
{
public:
    InputBytes(const uint8_t *data, size_t size) : bytes(reinterpret_cast<const char *>(data), size) {}

    bool atEnd() const { return bytes.empty(); }
    /// The next byte; 0 when there is none.
    int byte();
    /// A number from 0 to @p count - 1, made of the next byte.
    int below(int count) { return byte() % count; }
    /// The bytes that were not taken yet.
    std::string_view rest() const { return bytes; }
    QByteArray restAsBytes() const { return {bytes.data(), int(bytes.size())}; }

private:
    std::string_view bytes;
};

/// A file in memory that can be opened by its path while the object lives.
class MemoryFile
{
public:
    explicit MemoryFile(std::string_view content);
    ~MemoryFile();
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    QString path() const;

private:
    int descriptor;
};

/// Collects what the code under test writes to std::cerr while the object lives.
class CerrText
{
public:
    CerrText();
    ~CerrText();
    CerrText(const CerrText &) = delete;
    CerrText &operator=(const CerrText &) = delete;

    QByteArray text() const;
};

/// For startTarget(): chooses the offscreen platform, and drops all messages of Qt and all output to std::cerr.
void silence();

template<typename Application> int startTarget(int *argc, char ***argv)
{
    silence();
    static Application application(*argc, *argv);
    return 0;
}

#endif
