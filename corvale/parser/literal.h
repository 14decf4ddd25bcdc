#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ZR::Corvale {

class Data;

/// The value that a literal of the language stands for: Boolean, Integer, Float or String, tried in
/// this order, so that `1` is never a Float and the empty text is the Integer 0.
/// Threads: thread-safe. Failure: null, without a word, for a text that is no literal.
boost::shared_ptr<Data> literalData(const std::string& text);

} // namespace ZR::Corvale
