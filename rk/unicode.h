#pragma once

#include <boost/filesystem/path.hpp>

namespace rk {

/// The conversion facet with which a `boost::filesystem::path` takes its narrow text as UTF-8.
/// Lives as long as the program. Thread-safe.
const boost::filesystem::path::codecvt_type& unicodeFacet();

} // namespace rk
