// A plug-in with one filter, Count: how many pixels of a mask are on.
//
//   mask (BinaryImage) --> [ Count ] --> count (Integer)

#include "corvale/data/data.h"
#include "corvale/data/databinaryimage.h"
#include "corvale/engine/corvale.h"
#include "corvale/filter/userfilter.h"

#include <boost/make_shared.hpp>

#include <algorithm>

using ZR::Corvale::Data;

namespace {

class Count : public ZR::Corvale::UserFilter
{
public:
    std::string getName() override { return "Count"; }
    std::string getDescription() override { return "Counts the pixels of a mask that are on."; }
    std::vector<std::string> getInputs() override { return {"mask[BinaryImage]"}; }
    std::vector<std::string> getOutputs() override { return {"count"}; }

    std::vector<boost::shared_ptr<Data>>
    applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs) override
    {
        const auto* mask = static_cast<ZR::Corvale::Type::BinaryImage*>(*inputs.at(0));
        if (mask == nullptr)
            return {};
        int count = 0;
        for (int y = 0; y < mask->mat.rows; ++y) {
            const unsigned char* row = mask->mat.ptr(y);
            count += static_cast<int>(
                std::count_if(row, row + mask->mat.cols, [](unsigned char pixel) { return pixel != 0; }));
        }
        return {boost::make_shared<Data>(count)};
    }
};

} // namespace

/// The engine calls this when a program imports the plug-in. `handle` is the host's engine.
extern "C" void corvaleInit(void* handle)
{
    static_cast<ZR::Corvale::Corvale*>(handle)->createFilter(boost::make_shared<Count>());
}
