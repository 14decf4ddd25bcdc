#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace ZR::Corvale {

class Port;

/// The first port of that name, compared byte for byte; for the empty name also the only port there
/// is, which is what lets a program leave it out. Null if none fits. Null entries are passed over.
boost::shared_ptr<Port> findPort(const std::vector<boost::shared_ptr<Port>>& ports, const std::string& name);

} // namespace ZR::Corvale
