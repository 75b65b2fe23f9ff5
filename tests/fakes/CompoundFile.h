// Writes compound files, and saved mails in them, for the tests to read.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/Bytes.h"
#include "platform/text.h"

namespace kavidex::tests {

struct Folder {
    std::map<std::string, std::string> streams;
    std::map<std::string, Folder> folders;
};

class CompoundFileWriter {
public:
    static std::string Write(const Folder& root) {
        CompoundFileWriter writer;
        writer.Add("Root Entry", 5, {});
        writer.AddContents(0, root);
        return writer.Finish();
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF, end = 0xFFFFFFFE, fatSector = 0xFFFFFFFD;
    struct Entry {
        std::string name;
        std::uint8_t kind = 0;
        std::uint32_t right = none, child = none, start = end;
        std::string content;
    };

    std::uint32_t Add(const std::string& name, std::uint8_t kind, const std::string& content) {
        lclEntries.push_back({name, kind, none, none, end, content});
        return static_cast<std::uint32_t>(lclEntries.size() - 1);
    }

    // Siblings hang to the right of one another in the order of the format: the shorter name first.
    void AddContents(std::uint32_t parent, const Folder& folder) {
        std::map<std::pair<std::size_t, std::string>, std::uint32_t> sorted;
        for (const auto& [name, content] : folder.streams)
            sorted[{name.size(), name}] = Add(name, 2, content);
        for (const auto& [name, below] : folder.folders) {
            const std::uint32_t entry = Add(name, 1, {});
            sorted[{name.size(), name}] = entry;
            AddContents(entry, below);
        }
        std::uint32_t* link = &lclEntries[parent].child;
        for (const auto& [key, entry] : sorted) {
            *link = entry;
            link = &lclEntries[entry].right;
        }
    }

    std::uint32_t Put(std::string bytes) {
        if (bytes.empty()) return end;
        const auto first = static_cast<std::uint32_t>(lclFat.size());
        bytes.resize((bytes.size() + 511) / 512 * 512);
        lclSectors += bytes;
        for (std::size_t i = 0; i + 1 < bytes.size() / 512; ++i)
            lclFat.push_back(static_cast<std::uint32_t>(lclFat.size() + 1));
        lclFat.push_back(end);
        return first;
    }

    std::string Finish() {
        std::string mini, miniFat, directory, fat;
        for (Entry& entry : lclEntries) {
            if (entry.kind != 2 || entry.content.empty()) continue;
            if (entry.content.size() >= 4096) {
                entry.start = Put(entry.content);
                continue;
            }
            entry.start = static_cast<std::uint32_t>(mini.size() / 64);
            mini += entry.content;
            mini.resize((mini.size() + 63) / 64 * 64);
            while (miniFat.size() / 4 + 1 < mini.size() / 64)
                platform::AppendLittle(miniFat, static_cast<std::uint32_t>(miniFat.size() / 4 + 1));
            platform::AppendLittle(miniFat, end);
        }
        const auto miniSectors = static_cast<std::uint32_t>((miniFat.size() + 511) / 512);
        while (miniFat.size() % 512 != 0) platform::AppendLittle(miniFat, none);
        const std::uint32_t miniStart = Put(miniFat);
        lclEntries[0].start = Put(mini);
        lclEntries[0].content = mini;
        for (const Entry& entry : lclEntries) directory += Raw(entry);
        const std::uint32_t directoryStart = Put(directory);

        const auto fatStart = static_cast<std::uint32_t>(lclFat.size());
        std::size_t fatSectors = 1;
        while (fatSectors * 128 < lclFat.size() + fatSectors) ++fatSectors;
        lclFat.resize(lclFat.size() + fatSectors, fatSector);
        lclFat.resize(fatSectors * 128, none);
        for (const std::uint32_t next : lclFat) platform::AppendLittle(fat, next);
        return Header(fatStart, fatSectors, directoryStart, miniStart, miniSectors) + lclSectors +
               fat;
    }

    static std::string Raw(const Entry& entry) {
        std::string raw;
        for (const char16_t unit : platform::ToUtf16(entry.name))
            platform::AppendLittle(raw, static_cast<std::uint16_t>(unit));
        const auto length = static_cast<std::uint16_t>(raw.size() + 2);
        raw.resize(64);
        platform::AppendLittle(raw, length);
        raw += static_cast<char>(entry.kind);
        raw += '\1'; // black
        for (const std::uint32_t link : {none, entry.right, entry.child})
            platform::AppendLittle(raw, link);
        raw.resize(116);
        platform::AppendLittle(raw, entry.kind == 1 ? 0 : entry.start);
        platform::AppendLittle(raw, static_cast<std::uint64_t>(entry.content.size()));
        return raw;
    }

    static std::string Header(std::uint32_t fatStart, std::size_t fatSectors,
                              std::uint32_t directoryStart, std::uint32_t miniStart,
                              std::uint32_t miniSectors) {
        std::string header("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
        header.resize(24);
        for (const std::uint16_t number : {0x3E, 3, 0xFFFE, 9, 6})
            platform::AppendLittle(header, number);
        header.resize(44);
        for (const std::uint32_t number :
             {static_cast<std::uint32_t>(fatSectors), directoryStart, std::uint32_t{0},
              std::uint32_t{4096}, miniStart, miniSectors, end, std::uint32_t{0}})
            platform::AppendLittle(header, number);
        for (std::uint32_t i = 0; i < 109; ++i)
            platform::AppendLittle(header, i < fatSectors ? fatStart + i : none);
        return header;
    }

    std::vector<Entry> lclEntries;
    std::vector<std::uint32_t> lclFat;
    std::string lclSectors;
};

// The properties of one part of a mail, as its streams.
class MailPart {
public:
    explicit MailPart(std::size_t headerSize) : lclValues(headerSize, '\0') {}

    MailPart& Wide(const std::string& id, const std::string& text) {
        std::string bytes;
        for (const char16_t unit : platform::ToUtf16(text))
            platform::AppendLittle(bytes, static_cast<std::uint16_t>(unit));
        return Raw(id + "001F", bytes);
    }
    MailPart& Raw(const std::string& idAndType, const std::string& bytes) {
        lclFolder.streams["__substg1.0_" + idAndType] = bytes;
        return *this;
    }
    MailPart& Fixed(std::uint32_t tag, std::uint64_t value) {
        platform::AppendLittle(lclValues, tag);
        platform::AppendLittle(lclValues, std::uint32_t{6});
        platform::AppendLittle(lclValues, value);
        return *this;
    }
    MailPart& With(const std::string& name, const MailPart& part) {
        lclFolder.folders[name] = part.Whole();
        return *this;
    }
    Folder Whole() const {
        Folder folder = lclFolder;
        folder.streams["__properties_version1.0"] = lclValues;
        return folder;
    }

private:
    std::string lclValues;
    Folder lclFolder;
};

} // namespace kavidex::tests
