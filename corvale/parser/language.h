#pragma once

namespace ZR::Corvale {

/// The script languages that a `script` statement can name.
enum Language
{
    Lua = 0
};

} // namespace ZR::Corvale
