#pragma once

#include <string>
#include <vector>

namespace ZR::Corvale {

/// The keys of an ordered map, in its order.
template <typename Map>
std::vector<std::string> keysOf(const Map& map)
{
    std::vector<std::string> keys;
    keys.reserve(map.size());
    for (const auto& entry : map)
        keys.push_back(entry.first);
    return keys;
}

/// Whether a name has two halves: "process:sink".
inline bool hasColon(const std::string& name)
{
    return name.find(':') != std::string::npos;
}

/// The value of a key, or a null pointer.
template <typename Map>
typename Map::mapped_type findIn(const Map& map, const std::string& key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : typename Map::mapped_type();
}

} // namespace ZR::Corvale
