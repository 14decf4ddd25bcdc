// A plug-in for the tests: PLUGIN_ENTRY says whether its entry is missing, throws, adds a source, or needs
// what nobody has.

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

namespace {

// A type that lives in this library, destructor included.
struct Refusal
{
    virtual ~Refusal() {}
};

} // namespace

#if PLUGIN_ENTRY == 1
extern "C" void corvaleInit(void*)
{
    throw Refusal();
}
#elif PLUGIN_ENTRY == 2
extern "C" void corvaleInit(void* handle)
{
    static_cast<ZR::Corvale::Corvale*>(handle)->createSource("plugged");
}
#elif PLUGIN_ENTRY == 3
extern int missing;
extern "C" void corvaleInit(void*)
{
    missing = 1;
}
#endif
