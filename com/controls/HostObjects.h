// What hosts hand to the controls, as the core knows it, and what the controls hand back.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "com/dispatch/Convert.h"
#include "controls/common/Appearance.h"
#include "controls/common/Translator.h"
#include "controls/tree/TreeEvents.h"
#include "platform/win32/TextsOf.h"

namespace kavidex::model {
class clsUserAuth;
}

namespace kavidex::com {

// A host's translator has one method, Translate(text), that gives the text in the current language;
// placeholders ($%$) it leaves in place, they are filled here. When the call fails the text stays
// as it is, with a line in the log. Null for Nothing; an object without the method is refused.
std::shared_ptr<controls::Translator> TranslatorOf(const ComPtr<IDispatch>& object);

// Our own clsUserAuth as it is; of any other object the answers of its GetRight(key) for every
// right that the system knows, taken at this moment. Null for Nothing; refused without GetRight.
std::shared_ptr<model::clsUserAuth> RightsOf(const ComPtr<IDispatch>& object);

// The own translator of a control as hosts see it; null for null.
ComPtr<IDispatch> TranslatorFace(const std::shared_ptr<controls::Translator>& translator);

using platform::win32::TextsOf;

// An object with Item (counted from 1), Count and an enumerator.
ComPtr<IDispatch> CollectionOf(std::vector<Variant> items);
ComPtr<IDispatch> CollectionOf(const std::vector<std::string>& texts);

template <class T>
ComPtr<IDispatch> CollectionOf(const std::vector<std::shared_ptr<T>>& objects) {
    std::vector<Variant> items;
    for (const auto& object : objects) items.push_back(Convert<std::shared_ptr<T>>::To(object));
    return CollectionOf(std::move(items));
}

// What was dropped: an array of file names, or the text when there are no files.
Variant DropContents(const controls::DropData& data);
Variant TextArray(const std::vector<std::string>& texts);

// The standard font object, and back; Nothing is the system's font.
ComPtr<IDispatch> FontObject(const std::optional<controls::FontFace>& font);
std::optional<controls::FontFace> FontFrom(const ComPtr<IDispatch>& object);

} // namespace kavidex::com
