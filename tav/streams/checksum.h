#ifndef TAVOLINE_CHECKSUM_H
#define TAVOLINE_CHECKSUM_H

#include <QtGlobal>

#include <memory>
#include <string_view>

struct XXH3_state_s;

/// The checksum of bytes that come piece by piece: XXH3 with 64 bits (Y. Collet, xxHash), as fast as they are read from
/// memory. It finds damage and change, not what somebody means to hide.
class Checksum
{
public:
    /// Throws std::bad_alloc when there is no memory.
    Checksum();

    void add(std::string_view bytes);
    /// That of all bytes so far.
    quint64 value() const;

    /// That of @p bytes alone.
    static quint64 of(std::string_view bytes);

private:
    struct Free {
        void operator()(XXH3_state_s *state) const;
    };
    std::unique_ptr<XXH3_state_s, Free> state;
};

#endif
