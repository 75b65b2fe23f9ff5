#include "imaging/tiff/LibTiff.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <exception>

namespace kavidex::imaging::tiff {

struct LibTiff::Stream {
    Source* source = nullptr;
    std::string* memory = nullptr;
    std::uint64_t at = 0;
    std::size_t mostMemory = 0;
    std::string complaint;

    std::uint64_t Size() const { return source ? source->Size() : memory->size(); }
};

namespace {

LibTiff::Stream& StreamOf(thandle_t handle) { return *static_cast<LibTiff::Stream*>(handle); }

tmsize_t Read(thandle_t handle, void* room, tmsize_t size) {
    LibTiff::Stream& stream = StreamOf(handle);
    std::size_t got = 0;
    try {
        if (stream.source) {
            got = stream.source->ReadSome(stream.at, room, static_cast<std::size_t>(size));
        } else if (stream.at < stream.memory->size()) {
            got = std::min<std::size_t>(static_cast<std::size_t>(size),
                                        stream.memory->size() - stream.at);
            std::memcpy(room, stream.memory->data() + stream.at, got);
        }
    } catch (const std::exception& error) {
        if (stream.complaint.empty()) stream.complaint = error.what();
        return -1;
    }
    stream.at += got;
    return static_cast<tmsize_t>(got);
}

tmsize_t Write(thandle_t handle, void* bytes, tmsize_t size) {
    LibTiff::Stream& stream = StreamOf(handle);
    const auto length = static_cast<std::size_t>(size);
    if (!stream.memory || stream.at + length > stream.mostMemory) return -1;
    try {
        if (stream.memory->size() < stream.at + length)
            stream.memory->resize(static_cast<std::size_t>(stream.at) + length);
    } catch (const std::exception&) {
        return -1;
    }
    std::memcpy(stream.memory->data() + stream.at, bytes, length);
    stream.at += length;
    return size;
}

toff_t Seek(thandle_t handle, toff_t offset, int whence) {
    LibTiff::Stream& stream = StreamOf(handle);
    if (whence == SEEK_CUR) offset += stream.at;
    if (whence == SEEK_END) offset += stream.Size();
    stream.at = offset;
    return offset;
}

int CloseStream(thandle_t) { return 0; }
toff_t Size(thandle_t handle) { return StreamOf(handle).Size(); }

int Complain(TIFF*, void* user, const char*, const char* format, va_list arguments) {
    std::string& complaint = static_cast<LibTiff::Stream*>(user)->complaint;
    if (!complaint.empty()) return 1; // the first one tells the cause
    char text[300];
    std::vsnprintf(text, sizeof text, format, arguments);
    complaint = *text ? text : "it is damaged";
    return 1;
}

int KeepQuiet(TIFF*, void*, const char*, const char*, va_list) { return 1; }

} // namespace

LibTiff::LibTiff(Source& source, std::uint64_t directory, std::size_t mostMemory)
    : lclStream(std::make_unique<Stream>()) {
    lclStream->source = &source;
    Open("rhm", mostMemory); // the header alone: the directory is gone to at once
    if (lclTiff && TIFFSetSubDirectory(lclTiff, directory)) return;
    const std::string complaint = Complaint();
    Close();
    source.Damaged(complaint.empty() ? "the directory of a page is damaged" : complaint);
}

LibTiff::LibTiff(std::string& memory, Order order, std::size_t mostMemory)
    : lclStream(std::make_unique<Stream>()) {
    lclStream->memory = &memory;
    Open(order == Order::little ? "wlm" : "wbm", mostMemory);
}

LibTiff::~LibTiff() { Close(); }

void LibTiff::Open(const char* mode, std::size_t mostMemory) {
    lclStream->mostMemory = mostMemory;
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(
        TIFFOpenOptionsAlloc(), &TIFFOpenOptionsFree);
    if (!options) return;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(mostMemory));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &Complain, lclStream.get());
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &KeepQuiet, nullptr);
    lclTiff = TIFFClientOpenExt("page", mode, lclStream.get(), &Read, &Write, &Seek, &CloseStream,
                                &Size, nullptr, nullptr, options.get());
}

const std::string& LibTiff::Complaint() const { return lclStream->complaint; }

bool LibTiff::Close() {
    if (!lclTiff) return false;
    const bool good = TIFFFlush(lclTiff) == 1;
    TIFFClose(lclTiff);
    lclTiff = nullptr;
    return good && lclStream->complaint.empty();
}

} // namespace kavidex::imaging::tiff
