// Reading RTF, as far as the help text goes: paragraphs, bold, colours, bullet lists, characters of code page 1252 and
// Unicode.
#pragma once

#include <QString>
#include <string_view>

namespace carvello {

// The text as HTML. What begins like a link of the web becomes one. Control words that are not known change nothing,
// and a text that ends early is read up to there.
QString RtfToHtml(std::string_view rtf);

}  // namespace carvello
