#include "checksum.h"

#include <new>
#include <xxhash.h>

void Checksum::Free::operator()(XXH3_state_s *given) const
{
    XXH3_freeState(given);
}

Checksum::Checksum() : state(XXH3_createState())
{
    if (!state) {
        throw std::bad_alloc();
    }
    XXH3_64bits_reset(state.get());
}

void Checksum::add(std::string_view bytes)
{
    XXH3_64bits_update(state.get(), bytes.data(), bytes.size());
}

quint64 Checksum::value() const
{
    return XXH3_64bits_digest(state.get());
}

quint64 Checksum::of(std::string_view bytes)
{
    return XXH3_64bits(bytes.data(), bytes.size());
}
