#include "com/controls/HostObjects.h"

#include <ocidl.h>
#include <olectl.h>

#include "com/dispatch/Automation.h"
#include "com/model/faces.h"
#include "kavidex_idl.h"
#include "model/clsUserAuth.h"
#include "model/rights.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"
#include "platform/win32/Late.h"

namespace kavidex::com {

namespace {

using platform::win32::Check;
using platform::win32::Late;

constexpr const char* source = "Kavidex";

class HostTranslator final : public controls::Translator {
public:
    explicit HostTranslator(const ComPtr<IDispatch>& object) : lclObject(object) {}

    std::string Translate(std::string_view text, const std::vector<std::string>& values) override {
        std::string translated(text);
        try {
            translated = lclObject.Call(L"Translate", {Variant(text)}).ToText();
        } catch (const platform::Error& error) {
            platform::TheWorkstation().log.Write("Translate", error.what());
        }
        return platform::FillPlaceholders(translated, values);
    }

private:
    Late lclObject;
};

// Refused, before anything is kept: the object lacks what will be called.
void Demand(const ComPtr<IDispatch>& object, const std::string& property,
            std::initializer_list<const wchar_t*> members) {
    const Late given(object);
    for (const wchar_t* const name : members)
        if (!given.Has(name))
            throw platform::Error(platform::errors::invalidPropertyValue,
                                  "Invalid property value: the object given to " + property +
                                      " has no " + platform::win32::FromWide(name));
}

class OwnTranslatorFace final : public Automation {
public:
    explicit OwnTranslatorFace(std::shared_ptr<controls::Translator> translator)
        : lclTranslator(std::move(translator)) {}
    std::string Translate(std::string_view text) const {
        return lclTranslator->Translate(text, {});
    }
    const Table& Members() const override;

protected:
    std::shared_ptr<void> Native(const std::type_info& wanted) override {
        return wanted == typeid(controls::Translator) ? lclTranslator : nullptr;
    }

private:
    std::shared_ptr<controls::Translator> lclTranslator;
};

constexpr Member translatorMembers[] = {
    Rows<OwnTranslatorFace>::Method<&OwnTranslatorFace::Translate>(L"Translate", 1, L"Text"),
};

const Table& OwnTranslatorFace::Members() const {
    static constexpr Table table{"Kavidex.Translator", &DIID__Translator, translatorMembers};
    return table;
}

} // namespace

ComPtr<IDispatch> TranslatorFace(const std::shared_ptr<controls::Translator>& translator) {
    return translator ? Make<OwnTranslatorFace>(translator) : ComPtr<IDispatch>();
}

std::shared_ptr<controls::Translator> TranslatorOf(const ComPtr<IDispatch>& object) {
    if (!object) return nullptr;
    if (auto own = NativeOf<controls::Translator>(object.Get())) return own;
    Demand(object, "Translate", {L"Translate"});
    return std::make_shared<HostTranslator>(object);
}

std::shared_ptr<model::clsUserAuth> RightsOf(const ComPtr<IDispatch>& object) {
    if (!object) return nullptr;
    if (auto own = NativeOf<model::clsUserAuth>(object.Get())) return own;
    Demand(object, "UserAuth", {L"GetRight"});
    const Late host(object);
    auto rights = std::make_shared<model::clsUserAuth>(platform::TheWorkstation());
    for (const auto& right : model::Rights())
        rights->SetRight(right.key, host.Call(L"GetRight", {Variant(right.key)}).ToText());
    return rights;
}

Variant TextArray(const std::vector<std::string>& texts) {
    return platform::win32::ArrayOf(std::vector<Variant>(texts.begin(), texts.end()));
}

Variant DropContents(const controls::DropData& data) {
    return data.hasFiles ? TextArray(data.files) : Variant(data.text);
}

ComPtr<IDispatch> FontObject(const std::optional<controls::FontFace>& font) {
    if (!font) return {};
    std::wstring name = platform::win32::ToWide(font->name);
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = name.data();
    description.cySize.int64 = static_cast<LONGLONG>(font->points * 10000);
    description.sWeight = static_cast<SHORT>(font->weight);
    description.fItalic = font->italic;
    description.fUnderline = font->underline;
    description.fStrikethrough = font->strikethrough;
    ComPtr<IDispatch> object;
    Check(
        OleCreateFontIndirect(&description, IID_IDispatch, reinterpret_cast<void**>(object.Put())),
        source);
    return object;
}

std::optional<controls::FontFace> FontFrom(const ComPtr<IDispatch>& object) {
    if (!object) return std::nullopt;
    ComPtr<IFont> font;
    if (FAILED(object->QueryInterface(IID_IFont, reinterpret_cast<void**>(font.Put()))))
        throw Refusal{DISP_E_TYPEMISMATCH};
    platform::win32::Bstr name;
    CY size{};
    SHORT weight = 0;
    BOOL italic = FALSE, underline = FALSE, strikethrough = FALSE;
    Check(font->get_Name(name.Put()), source);
    Check(font->get_Size(&size), source);
    Check(font->get_Weight(&weight), source);
    Check(font->get_Italic(&italic), source);
    Check(font->get_Underline(&underline), source);
    Check(font->get_Strikethrough(&strikethrough), source);
    return controls::FontFace{name.Text(),
                              static_cast<double>(size.int64) / 10000,
                              weight,
                              italic != FALSE,
                              underline != FALSE,
                              strikethrough != FALSE};
}

} // namespace kavidex::com
