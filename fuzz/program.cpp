// A program's text through the whole engine: it is loaded, then every sink is asked for its value, twice,
// with pictures on the sources that are there before it, each named by its kind.

#include "corvale/engine/corvale.h"
#include "corvale/parser/parsingtools.h"
#include "fuzz/values.h"
#include "support/fakeclock.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static support::FakeClock clock;
    const std::string program(data, data + size);
    if (removeComments('#', program).find("import") != std::string::npos)
        return 0; // no files of the machine
    ZR::Corvale::Corvale engine(0);
    for (int kind = DataType::ColorImage; kind <= DataType::XYZImage; ++kind)
        engine.createSource(Data::getTypeName(DataType(kind)));
    try {
        engine.loadProgram(program);
    } catch (const std::out_of_range&) { // a value for a source "process:source" that the process has not
    }
    Bytes bytes(data, size);
    for (int round = 0; round < 2; ++round) {
        clock.now = clock.now + 1000000000;
        for (int kind = DataType::ColorImage; kind <= DataType::XYZImage; ++kind)
            engine.setData(Data::getTypeName(DataType(kind)), value(bytes, DataType(kind)));
        for (const std::string& process : engine.getProcesses())
            for (const auto& sinks :
                 {engine.getProcessSinks(process), engine.getProcessAggregatedSinks(process)})
                for (const std::string& sink : sinks)
                    try {
                        inspect(engine.getData(process + ":" + sink));
                    } catch (const cv::Exception&) { // for a negative size, and for corners out of order
                    }
    }
    return 0;
}
