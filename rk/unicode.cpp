#include "rk/unicode.h"

#include <codecvt>

namespace rk {

const boost::filesystem::path::codecvt_type& unicodeFacet()
{
    // One reference of its own, so that no locale deletes it; never destroyed, as paths may outlive it.
    static const auto& facet = *new std::codecvt_utf8<wchar_t>(1);
    return facet;
}

} // namespace rk
