// Saved mails of any bytes: read, read in part or refused.
#include <cstdint>
#include <string>

#include "mail/CompoundFile.h"
#include "mail/SavedMail.h"
#include "platform/Error.h"
#include "tests/fakes/CompoundFile.h"

namespace {

using namespace kavidex;

// Half of the inputs lay their bytes over a whole mail, so that most of its structure holds.
std::string Mail() {
    tests::MailPart mail(32), part(8);
    mail.Wide("0037", "subject").Raw("0C1A001E", "name").Raw("10130102", std::string(5000, 'h'));
    mail.Fixed(0x3FDE0003, 1252).Fixed(0x00390040, 134000000000000000);
    part.Wide("3707", "file.pdf").Fixed(0x0C150003, 2);
    mail.With("__attach_version1.0_#00000000", part).With("__recip_version1.0_#00000000", part);
    return tests::CompoundFileWriter::Write(mail.Whole());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string whole = Mail();
    std::string bytes;
    if (size > 0 && data[0] % 2 == 0) {
        bytes = whole;
        for (std::size_t i = 1; i + 2 < size; i += 3)
            bytes[(data[i] * 256u + data[i + 1]) % bytes.size()] = static_cast<char>(data[i + 2]);
    } else {
        bytes.assign(reinterpret_cast<const char*>(data), size);
    }
    try {
        mail::ReadSavedMail(*mail::ReadCompoundFile(bytes));
    } catch (const platform::Error&) { // refused
    }
    return 0;
}
