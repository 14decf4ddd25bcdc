#pragma once

#include <boost/shared_ptr.hpp>

#include <vector>

namespace ZR::Corvale {
class Filter;
}

namespace ZR::Corvale::Filters {

/// One new object of each filter that every engine has, in the order in which it registers them.
std::vector<boost::shared_ptr<Filter>> makeBuiltinFilters();

} // namespace ZR::Corvale::Filters
