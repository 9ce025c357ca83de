// The one entity escape of the program's markup, shared by the report pages (HTML) and the JUnit
// files (XML). It works byte by byte, nothing is decoded as UTF-8.
#pragma once

#include <string>
#include <string_view>

// "&amp;", "&lt;", "&gt;", "&quot;" or "&#39;" for & < > " ', an empty view for any other byte.
std::string_view markup_escaped_byte(unsigned char byte);

// `text` for an XML attribute or element: the markup entities, tab, LF and CR as character
// references (so attributes keep them), and every other byte below 32, which XML cannot hold at
// all, as '?'. Appended to `out`.
void append_xml_escaped(std::string& out, std::string_view text);
