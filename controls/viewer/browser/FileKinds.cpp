#include "controls/viewer/browser/FileKinds.h"

#include <algorithm>
#include <iterator>

namespace kavidex::controls {

namespace {

constexpr std::string_view programs[] = {
    // Programs and what is loaded into them.
    "exe", "com", "scr", "pif", "dll", "ocx", "cpl", "sys", "jar", "gadget", "xll",
    // Scripts.
    "bat", "cmd", "vb", "vbs", "vbe", "js", "jse", "ws", "wsf", "wsh", "sct", "wsc", "ps1", "ps2",
    "psm1", "psd1", "ps1xml", "hta", "msh", "py", "pyw", "sh",
    // What installs, starts or redirects.
    "msi", "msp", "mst", "msc", "msix", "appx", "appref-ms", "application", "inf", "reg", "lnk",
    "url", "scf", "chm", "hlp", "job", "jnlp", "diagcab", "shs", "shb", "library-ms", "search-ms",
    "settingcontent-ms", "theme", "website", "xbap", "iso", "img", "vhd", "vhdx"};
constexpr std::string_view markups[] = {"htm",   "html", "shtml", "shtm", "xhtml", "xht", "mht",
                                        "mhtml", "xml",  "xsl",   "svg",  "asp",   "php"};

template <class Table>
bool Lists(const Table& table, std::string_view type) {
    return std::find(std::begin(table), std::end(table), type) != std::end(table);
}

} // namespace

FileKind FileKindOf(std::string_view type) {
    if (Lists(programs, type)) return FileKind::Program;
    return Lists(markups, type) ? FileKind::Markup : FileKind::Plain;
}

} // namespace kavidex::controls
