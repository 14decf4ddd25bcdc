// The smallest host: loads a program, feeds a source, reads a sink.
//
//   image --> [ Threshold ] --> mask
//   127 --------> ceil

#include "corvale/data/data.h"
#include "corvale/data/databinaryimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/engine/corvale.h"

#include <boost/make_shared.hpp>

#include <iostream>

using ZR::Corvale::Data;
namespace Type = ZR::Corvale::Type;

int main()
{
    ZR::Corvale::Corvale engine(0); // no workers: getData computes, here and now
    const bool loaded = engine.loadProgram(R"(
        source image { }
        process bright(Threshold, 3, 30.0) { in <= image; ceil <= 127; out => mask }
    )");
    if (!loaded)
        return 1;

    // A ramp from black to white.
    const auto ramp = boost::make_shared<Type::GrayscaleImage>(256, 1);
    for (int x = 0; x < 256; ++x)
        ramp->pixel(x, 0) = static_cast<unsigned char>(x);
    engine.setData("image", boost::make_shared<Data>(ramp));

    const boost::shared_ptr<Data> value = engine.getData("bright:mask");
    const auto* mask = value ? static_cast<Type::BinaryImage*>(*value) : nullptr;
    if (mask == nullptr)
        return 1;

    int bright = 0;
    for (int x = 0; x < 256; ++x)
        bright += mask->pixel(x, 0) != 0 ? 1 : 0;
    std::cout << bright << " of 256 pixels are bright\n";
}
