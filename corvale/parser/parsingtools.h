#pragma once

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace ZR::Corvale {

// The script language has no tokens and no grammar: whoever reads it cuts a text into smaller texts
// until a piece is a name or a literal. These are the cuts. What a program may hold follows from which
// of them see double quotes:
//
//                      sees double quotes   nests brackets        pieces
//     removeComments   no                   -                     -
//     blockString      yes                  its own pair only     trimmed
//     listString       yes                  no                    trimmed
//     splitString      no                   no                    trimmed, always two
//     splitSpace       no                   no                    as they are
//
// Texts are byte strings of any content and encoding; white space is TAB, LF, CR and blank.
// Threads: pure functions, thread-safe. Failure: none, a malformed text gives a result of the same form.
// Time: linear in the length of the text.

/// The text without its comments, each running from `comment` through the next CR or LF. A comment
/// starts inside a quoted string too, and takes its line break along, so that two lines join.
std::string removeComments(char comment, const std::string& text);

/// Finds the end of a quoted string. `quote` points at the opening double quote in a buffer that ends
/// in NUL. Gives the closing quote, or that NUL; a backslash protects the one byte behind it.
const char* skipString(const char* quote);

/// The text without white space at its ends.
std::string trimString(const std::string& text);

/// The parts of a text outside and inside its outermost bracket pairs, in order: "a{b{c}}d" gives
/// "a", "b{c}", "d". A part of no bytes is left out, a part of white space only is an empty piece.
/// Brackets that never close end with the text, a string that never closes takes the text's
/// terminating NUL into its piece.
std::list<std::string> blockString(char open, char close, const std::string& text);

/// The parts between separators, in order. Empty parts, white space and open strings count as in
/// `blockString`: "a,,b, " gives "a", "b", "".
std::list<std::string> listString(char separator, const std::string& text);

/// What stands before and behind the first occurrence of `separator`; the whole text and an empty one
/// if there is none.
std::pair<std::string, std::string> splitString(const std::string& separator, const std::string& text);

/// The words between blanks; TABs and line breaks belong to words.
std::vector<std::string> splitSpace(const std::string& text);

// Literals. The predicates overlap: ask for bool, integer, float and string in this order.

/// Exactly "true" or "false".
bool isBool(const std::string& text);
/// Digits behind an optional minus, of any length; so is the empty text. Hexadecimal digits are not.
bool isInteger(const std::string& text);
/// Digits with at most one point among them behind an optional minus, or "infinity"; so are the empty
/// text and ".".
bool isFloat(const std::string& text);
/// Begins and ends with a double quote, white space aside; one quote alone does both.
bool isString(const std::string& text);

/// Exactly "true".
bool toBool(const std::string& text);
/// The value modulo 2 to the power of 32, also of "0x" and hexadecimal digits; what is no digit counts
/// as 0.
int toInteger(const std::string& text);
/// The value as summed digit by digit in single precision, so its last bits may differ from those of
/// the nearest float; what is no digit is passed over.
float toFloat(const std::string& text);
/// The value of a quoted string, to be given trimmed: without its quotes, with \n \r \t \0 as the bytes
/// they name and any other byte behind a backslash as itself.
std::string toString(const std::string& text);

} // namespace ZR::Corvale
