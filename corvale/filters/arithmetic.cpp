#include "corvale/filters/arithmetic.h"

namespace ZR::Corvale::Filters {

std::vector<Guard> operandGuards(const Kinds& operands)
{
    return {Guard::count(2).quietly(),
            Guard::present(0).quietly(),
            Guard::present(1).quietly(),
            Guard::sameKind().quietly(),
            Guard::kind(0, operands).quietly(),
            Guard::intact(0),
            Guard::intact(1)};
}

} // namespace ZR::Corvale::Filters
