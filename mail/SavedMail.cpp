#include "mail/SavedMail.h"

#include <algorithm>

#include "mail/CompoundFile.h"
#include "platform/Bytes.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::mail {

namespace {

using platform::ReadLittle;

namespace property {
constexpr std::uint16_t subject = 0x0037, submitted = 0x0039, receivedByName = 0x0040,
                        recipientKind = 0x0C15, senderName = 0x0C1A, senderAddress = 0x0C1F,
                        copy = 0x0E03, to = 0x0E04, delivered = 0x0E06, body = 0x1000,
                        html = 0x1013, displayName = 0x3001, address = 0x3003,
                        shortFileName = 0x3704, fileName = 0x3707, smtpAddress = 0x39FE,
                        internetCodePage = 0x3FDE, messageCodePage = 0x3FFD,
                        senderSmtpAddress = 0x5D01;
} // namespace property

namespace kind {
constexpr std::uint16_t number = 0x0003, bytes8 = 0x001E, utf16 = 0x001F, time = 0x0040,
                        binary = 0x0102;
} // namespace kind

constexpr std::string_view values = "__properties_version1.0";
constexpr std::string_view attachment = "__attach_version1.0_#", recipient = "__recip_version1.0_#";
constexpr std::size_t mostOfAText = 64 * 1024, mostOfABody = 32 * 1024 * 1024,
                      mostOfValues = 1024 * 1024, mostListed = 1000;

std::string StreamName(std::uint16_t id, std::uint16_t type) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string name = "__substg1.0_";
    for (const std::uint16_t part : {id, type})
        for (int shift = 12; shift >= 0; shift -= 4) name += digits[(part >> shift) & 15];
    return name;
}

// The properties of one storage: the mail's own, or those of a recipient or an attachment.
class Properties {
public:
    Properties(Storage& storage, std::size_t headerSize) : lclStorage(storage) {
        if (auto bytes = storage.Stream(values, mostOfValues)) {
            lclWhole = true;
            lclValues = bytes->substr(std::min(headerSize, bytes->size()));
        }
    }

    bool AreThere() const { return lclWhole; }
    void SetCodePage(std::uint32_t codePage) { lclCodePage = codePage; }

    std::optional<std::uint64_t> Fixed(std::uint16_t id, std::uint16_t type) const {
        constexpr std::size_t size = 16;
        const std::uint32_t tag = (std::uint32_t{id} << 16) | type;
        for (std::size_t at = 0; at + size <= lclValues.size(); at += size)
            if (ReadLittle<std::uint32_t>(lclValues, at) == tag)
                return ReadLittle<std::uint64_t>(lclValues, at + 8);
        return std::nullopt;
    }

    std::uint32_t Number(std::uint16_t id) const {
        return static_cast<std::uint32_t>(Fixed(id, kind::number).value_or(0));
    }

    std::string Text(std::uint16_t id, std::size_t most = mostOfAText) const {
        std::string text;
        if (const auto wide = lclStorage.Stream(StreamName(id, kind::utf16), most)) {
            std::u16string units;
            for (std::size_t i = 0; i + 2 <= wide->size(); i += 2)
                units += static_cast<char16_t>(ReadLittle<std::uint16_t>(*wide, i));
            text = platform::ToUtf8(units);
        } else if (const auto bytes = lclStorage.Stream(StreamName(id, kind::bytes8), most)) {
            text = platform::FromCodePage(*bytes, lclCodePage);
        }
        return text.substr(0, text.find('\0'));
    }

    std::string FirstText(std::initializer_list<std::uint16_t> ids) const {
        for (const std::uint16_t id : ids)
            if (std::string text = Text(id); !text.empty()) return text;
        return {};
    }

    std::optional<platform::DateTime> Time(std::uint16_t id) const {
        const auto ticks = Fixed(id, kind::time);
        return ticks ? platform::LocalTime(*ticks) : std::nullopt;
    }

    std::string Html(std::uint32_t codePage) const {
        if (const auto bytes =
                lclStorage.Stream(StreamName(property::html, kind::binary), mostOfABody))
            return platform::FromCodePage(*bytes, codePage);
        return Text(property::html, mostOfABody);
    }

private:
    Storage& lclStorage;
    std::string lclValues;
    bool lclWhole = false;
    std::uint32_t lclCodePage = platform::systemCodePage;
};

constexpr std::size_t headerOfMail = 32, headerOfPart = 8;

// 1200 says UTF-16, in which no 8-bit text is written.
std::uint32_t CodePage(std::uint32_t number) {
    return number == 1200 ? platform::systemCodePage : number;
}

void ReadRecipient(const Properties& properties, SavedMail& mail) {
    MailAddress address;
    const std::uint32_t number = properties.Number(property::recipientKind);
    if (number == 2) address.kind = MailAddress::Kind::Copy;
    if (number == 3) address.kind = MailAddress::Kind::BlindCopy;
    address.name = properties.Text(property::displayName);
    address.address = properties.FirstText({property::smtpAddress, property::address});
    mail.recipients.push_back(std::move(address));
}

void ReadParts(Storage& file, std::uint32_t codePage, SavedMail& mail) {
    for (const std::string& name : file.Folders()) {
        const bool isAttachment = name.starts_with(attachment);
        if (isAttachment) ++mail.attachmentCount;
        if ((isAttachment ? mail.attachments.size() : mail.recipients.size()) >= mostListed)
            continue;
        if (!isAttachment && !name.starts_with(recipient)) continue;
        const std::unique_ptr<Storage> part = file.Folder(name);
        if (!part) continue;
        Properties properties(*part, headerOfPart);
        properties.SetCodePage(codePage);
        if (isAttachment)
            mail.attachments.push_back(properties.FirstText(
                {property::fileName, property::shortFileName, property::displayName}));
        else
            ReadRecipient(properties, mail);
    }
}

} // namespace

SavedMail ReadSavedMail(Storage& file) {
    Properties properties(file, headerOfMail);
    if (!properties.AreThere())
        throw platform::Error(platform::errors::fail, "The file holds no saved mail");
    const std::uint32_t internet = CodePage(properties.Number(property::internetCodePage));
    std::uint32_t codePage = CodePage(properties.Number(property::messageCodePage));
    if (codePage == platform::systemCodePage) codePage = internet;
    properties.SetCodePage(codePage);

    SavedMail mail;
    mail.subject = properties.Text(property::subject);
    mail.senderName = properties.Text(property::senderName);
    mail.senderAddress =
        properties.FirstText({property::senderSmtpAddress, property::senderAddress});
    mail.receivedByName = properties.Text(property::receivedByName);
    mail.to = properties.Text(property::to);
    mail.copy = properties.Text(property::copy);
    mail.sentOn = properties.Time(property::submitted);
    mail.receivedOn = properties.Time(property::delivered);
    mail.html = properties.Html(internet);
    mail.text = properties.Text(property::body, mostOfABody);
    ReadParts(file, codePage, mail);
    return mail;
}

SavedMail ReadSavedMail(std::string_view path) { return ReadSavedMail(*OpenCompoundFile(path)); }

} // namespace kavidex::mail
