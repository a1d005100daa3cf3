#ifndef TAVOLINE_FUZZ_FUZZTARGET_H
#define TAVOLINE_FUZZ_FUZZTARGET_H

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>

// What the targets share. A target is one source file with LLVMFuzzerInitialize(), called once, and
// LLVMFuzzerTestOneInput(), called for every input; libFuzzer calls them, or replay.cpp where there is no libFuzzer.

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Silences the code under test, and makes the application object: of widgets, without a display, when @p Application
/// is QApplication.
template<typename Application> int startTarget(int *argc, char ***argv);

/// Reports an input that breaks a promise: names the promise and aborts.
void require(bool kept, const char *promise);

/// The bytes of an input, taken from its beginning.
class InputBytes
{
public:
    InputBytes(const std::uint8_t *data, std::size_t size) : bytes(reinterpret_cast<const char *>(data), size) {}

    bool atEnd() const { return bytes.empty(); }
    /// The next byte; 0 when there is none.
    int byte();
    /// A number from 0 to @p count - 1, made of the next byte.
    int below(int count) { return byte() % count; }
    /// Everything that was not taken.
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

/// What startTarget() does before the application is made.
void silence();

template<typename Application> int startTarget(int *argc, char ***argv)
{
    silence();
    static Application application(*argc, *argv);
    return 0;
}

#endif
