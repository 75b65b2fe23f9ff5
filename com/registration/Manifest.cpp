#include "com/registration/Manifest.h"

#include <oaidl.h>
#include <olectl.h>

#include "com/Module.h"
#include "com/class_table.h"
#include "com/dispatch/ErrorBoundary.h"
#include "kavidex_idl.h"
#include "platform/win32/Variant.h"
#include "platform/win32/WindowsFiles.h"

namespace kavidex::com {

namespace {

using platform::win32::FromWide;

struct StatusName {
    DWORD flag;
    const char* name;
};

std::string FileStem() { return sizeof(void*) == 8 ? "Kavidex64" : "Kavidex"; }

constexpr StatusName statusNames[] = {
    {OLEMISC_RECOMPOSEONRESIZE, "recomposeonresize"},
    {OLEMISC_INVISIBLEATRUNTIME, "invisibleatruntime"},
    {OLEMISC_CANTLINKINSIDE, "cantlinkinside"},
    {OLEMISC_INSIDEOUT, "insideout"},
    {OLEMISC_ACTIVATEWHENVISIBLE, "activatewhenvisible"},
    {OLEMISC_SETCLIENTSITEFIRST, "setclientsitefirst"},
};

std::string GuidText(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return FromWide(text);
}

std::string StatusText(DWORD status) {
    std::string result;
    for (const StatusName& row : statusNames)
        if (status & row.flag) result += (result.empty() ? "" : ",") + std::string(row.name);
    return result;
}

std::string ClassText(const ClassRow& row) {
    const std::string progId = "Kavidex." + FromWide(row.name);
    std::string text = "    <comClass clsid=\"" + GuidText(*row.clsid) +
                       "\" threadingModel=\"Apartment\"\n              progid=\"" + progId +
                       ".1\" tlbid=\"" + GuidText(LIBID_Kavidex) + "\"";
    if (row.IsControl())
        text += "\n              miscStatus=\"" + StatusText(row.miscStatus) + "\"";
    return text + ">\n      <progid>" + progId + "</progid>\n    </comClass>\n";
}

} // namespace

std::string ManifestText() {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                       "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" "
                       "manifestVersion=\"1.0\">\n"
                       "  <assemblyIdentity type=\"win32\" name=\"Kavidex\" version=\"1.0.0.0\"/>\n"
                       "  <file name=\"" +
                       FileStem() +
                       ".ocx\">\n"
                       "    <typelib tlbid=\"" +
                       GuidText(LIBID_Kavidex) + "\" version=\"1.0\" helpdir=\"\"/>\n";
    for (const ClassRow& row : ClassTable()) text += ClassText(row);
    return text + "  </file>\n</assembly>\n";
}

HRESULT WriteManifest() noexcept {
    return Guard("Kavidex", IID_NULL, [&]() -> HRESULT {
        const std::string path = FromWide(ModulePath());
        platform::win32::WindowsFiles files;
        files.WriteAll(path.substr(0, path.find_last_of('\\') + 1) + FileStem() + ".manifest",
                       ManifestText());
        return S_OK;
    });
}

} // namespace kavidex::com
