#include "corvale/filter/filter.h"

#include "corvale/data/data.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/portlookup.h"
#include "rk/log.h"

namespace ZR::Corvale {

namespace {
[[maybe_unused]] const std::string category = rk::log::addCategory("corvale.filter    ");
}

Filter::~Filter() = default;

boost::shared_ptr<Port> Filter::getInput(const std::string& name) const
{
    return findPort(_inputs, name);
}

boost::shared_ptr<Port> Filter::getOutput(const std::string& name) const
{
    return findPort(_outputs, name);
}

std::string Filter::getDescription() const
{
    return "* no description *";
}

std::vector<boost::shared_ptr<Data>> Filter::consume(std::vector<boost::shared_ptr<Data>>& inputs,
                                                     const StringHash& processHash,
                                                     const StringHash& scopeHash, long long depth)
{
    return applyFilter(inputs, processHash, scopeHash, depth);
}

void Filter::synchronize(const StringHash&, const StringHash&, long long) {}

void Filter::synchronizeRelease(const StringHash&, const StringHash&, long long) {}

void Filter::abandon(const StringHash&, const StringHash&) {}

void Filter::forget(const StringHash&, const StringHash&) {}

} // namespace ZR::Corvale
