#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace ZR::Corvale {

/// A text and its 64-bit hash: the key of every table that belongs to one computation.
///
/// Tables are keyed by the bare hash. Two texts of equal hash are one key; that is accepted.
/// Ownership: copies share the text. Threads: immutable, so several threads may read one.
class StringHash
{
public:
    StringHash(const std::string& text)
        : _string(boost::make_shared<const std::string>(text)),
          _hash(extendHash(0, text))
    {
    }

    /// The text of `outer` followed by `suffix`; only the suffix is hashed.
    static StringHash extended(const StringHash& outer, const std::string& suffix)
    {
        return StringHash(boost::make_shared<const std::string>(*outer._string + suffix),
                          extendHash(outer._hash, suffix));
    }

    /// The hash of a text whose beginning has the hash `seed`: the `boost::hash_combine` step over
    /// the characters, each taken as a signed char. Being a left fold, it goes on where it stopped.
    static std::uint64_t extendHash(std::uint64_t seed, const std::string& text)
    {
        for (const char c : text)
            seed ^= (seed >> 2) + (seed << 6) + 0x9e3779b9u +
                    static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(c)));
        return seed;
    }

    boost::shared_ptr<const std::string> _string;
    std::uint64_t _hash;

private:
    StringHash(boost::shared_ptr<const std::string> text, std::uint64_t hash) : _string(text), _hash(hash) {}
};

} // namespace ZR::Corvale
