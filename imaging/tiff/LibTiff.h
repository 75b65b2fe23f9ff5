// One open libtiff handle over bytes that the house reads or keeps itself, so that names of any
// alphabet work; what libtiff complains of is kept for the message.
#pragma once

#include <memory>
#include <string>

#include <tiffio.h>

#include "imaging/tiff/Source.h"

namespace kavidex::imaging::tiff {

class LibTiff {
public:
    // To read the page whose directory lies there. Throws platform::Error where libtiff cannot.
    LibTiff(Source& source, std::uint64_t directory, std::size_t mostMemory);
    // To write a file of this byte order into `memory`.
    LibTiff(std::string& memory, Order order, std::size_t mostMemory);
    ~LibTiff();
    LibTiff(const LibTiff&) = delete;
    LibTiff& operator=(const LibTiff&) = delete;

    TIFF* Get() const { return lclTiff; }
    // The first complaint since the opening; empty where all went well.
    const std::string& Complaint() const;
    // What libtiff buffered is in `memory` afterwards; false where it cannot write.
    bool Close();

    struct Stream;

private:
    void Open(const char* mode, std::size_t mostMemory);

    std::unique_ptr<Stream> lclStream;
    TIFF* lclTiff = nullptr;
};

} // namespace kavidex::imaging::tiff
