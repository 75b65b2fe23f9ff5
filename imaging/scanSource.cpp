#include "imaging/scanSource.h"

#include <algorithm>
#include <cstdint>

#include "imaging/tiff/Source.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/text.h"

namespace kavidex::imaging {

namespace {

constexpr std::uint16_t makerTag = 271, modelTag = 272, programTag = 305;

std::string TextOf(tiff::Source& source, const tiff::Directory& directory, std::uint16_t tag) {
    constexpr std::uint64_t longest = 255;
    const tiff::Entry* entry = directory.Find(tag);
    if (!entry || entry->type != tiff::types::ascii) return {};
    std::string text;
    if (source.IsInline(*entry)) {
        text = source.Value(*entry);
    } else {
        text.resize(static_cast<std::size_t>(std::min(entry->Size(), longest)));
        source.Read(source.ValueOffset(*entry), text.data(), text.size());
    }
    return platform::Trim(text.substr(0, text.find('\0')));
}

} // namespace

std::string ScanSource(platform::Files& files, std::string_view path) {
    return ScanSource(files.Reader(path));
}

std::string ScanSource(std::unique_ptr<platform::FileReader> reader) {
    try {
        tiff::Source source(std::move(reader), "");
        const auto directory = source.Page(1);
        const std::string maker = TextOf(source, directory, makerTag),
                          model = TextOf(source, directory, modelTag);
        // Models often begin with their maker's name.
        if (model.starts_with(maker) && !model.empty()) return model;
        const std::string scanner = platform::Trim(maker + " " + model);
        return scanner.empty() ? TextOf(source, directory, programTag) : scanner;
    } catch (const platform::Error& error) {
        if (error.Number() != platform::errors::invalidData) throw;
        return {};
    }
}

} // namespace kavidex::imaging
