// Every built-in filter on inputs of the kinds that it takes, and of others; twice, since some keep memory.

#include "fuzz/values.h"

#include "corvale/runtime/port.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes(data, size);
    const boost::shared_ptr<Filter>& filter = anyFilter(bytes);
    const StringHash process("process");
    for (int run = 0; run < 2; ++run) {
        Values inputs;
        for (const boost::shared_ptr<Port>& port : filter->getInputs()) {
            const std::vector<DataType>& kinds = port->getTypes();
            const std::size_t choice = bytes.ConsumeIntegralInRange(0ul, kinds.size() + 1);
            inputs.push_back(choice < kinds.size() ? value(bytes, kinds[choice]) : anything(bytes));
        }
        try {
            for (const auto& output : filter->applyFilter(inputs, process, process, 0))
                inspect(output);
        } catch (const cv::Exception&) { // for a negative size, and for sizes that differ
        }
    }
    for (const char* user : {"process", "___@LAMBDA@___"})
        memory.removeProcess(StringHash(user));
    return 0;
}
