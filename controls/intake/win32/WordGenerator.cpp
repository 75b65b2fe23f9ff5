#include "controls/intake/win32/WordGenerator.h"

#include "platform/win32/Late.h"

namespace kavidex::controls::win32 {

using platform::win32::Bstr;
using platform::win32::Late;
using platform::win32::Variant;

namespace {

// As a ByRef String: `holder` keeps what the callee leaves there.
Variant Reference(Bstr& holder, const std::string& text) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = holder.Put();
    *reference.pbstrVal = platform::win32::NewBstr(text);
    return Variant::Attach(reference); // any other way would copy what it refers to
}

class WordGenerator : public LetterGenerator {
public:
    Merged fncMergeDocument(const std::string& valueFile, const std::string& letter) override {
        Bstr values, document;
        Merged merged;
        merged.result = lclGenerator
                            .Call(L"fncMergeDocument",
                                  {Reference(values, valueFile), Reference(document, letter)})
                            .ToInt32();
        // It tells where the letter lies in place of the template, or of the values.
        if (document.Text() != letter)
            merged.document = document.Text();
        else if (values.Text() != valueFile)
            merged.document = values.Text();
        else if (lclGenerator.Has(L"Document"))
            merged.document = lclGenerator.Get(L"Document").ToText();
        return merged;
    }

private:
    const Late lclGenerator = Late::Create("LumaformWordGen.clsWord");
};

} // namespace

std::unique_ptr<LetterGenerator> MakeLetterGenerator() { return std::make_unique<WordGenerator>(); }

} // namespace kavidex::controls::win32
