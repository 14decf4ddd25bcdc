#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ZR::Corvale {

/// Objects that may hold one another in a circle, so that the engine has to part them when it ends: whatever
/// still lives, in a table or not.
///
/// Owns nothing; forgets what has ended now and then. Threads: none of its own; its owner guards it.
template <typename Object>
class WeakRegistry
{
public:
    void add(const boost::shared_ptr<Object>& object)
    {
        if (_known.size() >= _limit) {
            const auto ended = [](const boost::weak_ptr<Object>& known) { return known.expired(); };
            _known.erase(std::remove_if(_known.begin(), _known.end(), ended), _known.end());
            _limit = std::max<std::size_t>(64, 2 * _known.size());
        }
        _known.push_back(object);
    }

    template <typename Visit>
    void forEach(Visit visit) const
    {
        for (const boost::weak_ptr<Object>& known : _known)
            if (const boost::shared_ptr<Object> object = known.lock())
                visit(*object);
    }

private:
    std::vector<boost::weak_ptr<Object>> _known;
    std::size_t _limit = 64;
};

} // namespace ZR::Corvale
