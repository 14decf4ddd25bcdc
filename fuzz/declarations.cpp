// A host's filter that declares each line of any text as an input and as an output, and runs once.

#include "corvale/filter/filteradapter.h"
#include "corvale/filter/userfilter.h"
#include "fuzz/values.h"

#include <boost/algorithm/string.hpp>

using namespace fuzz;

namespace {

struct Declared : UserFilter
{
    std::string getName() override { return "Declared"; }
    std::string getDescription() override { return {}; }
    std::vector<std::string> getInputs() override { return lines; }
    std::vector<std::string> getOutputs() override { return lines; }
    Values applyFilter(const Values& values) override { return values; }

    std::vector<std::string> lines;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto declared = boost::make_shared<Declared>();
    boost::split(declared->lines, std::string(data, data + size), boost::is_any_of("\n"));
    long counter = 0;
    FilterAdapter(declared).dumpToDot(counter, -1);
    const auto lambda = Type::Lambda::createLambda(boost::shared_ptr<UserFilter>(declared));
    const Values results = lambda->apply(Values(3, boost::make_shared<Data>(1)));
    assert(results.size() <= declared->lines.size());
    return 0;
}
