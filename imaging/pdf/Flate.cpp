#include "imaging/pdf/Flate.h"

#include <zlib.h>

#include <new>

namespace kavidex::imaging {

struct Deflater::State {
    z_stream stream{};
};

Deflater::Deflater(int level) : lclState(std::make_unique<State>()) {
    if (deflateInit(&lclState->stream, level) != Z_OK) throw std::bad_alloc();
}

Deflater::~Deflater() { deflateEnd(&lclState->stream); }

void Deflater::Run(int flush) {
    z_stream& stream = lclState->stream;
    do {
        char buffer[32768];
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        deflate(&stream, flush);
        lclResult.append(buffer, sizeof buffer - stream.avail_out);
    } while (stream.avail_out == 0);
}

void Deflater::Add(std::string_view bytes) {
    lclState->stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    lclState->stream.avail_in = static_cast<uInt>(bytes.size());
    Run(Z_NO_FLUSH);
}

std::string Deflater::Finish() {
    Run(Z_FINISH);
    return std::move(lclResult);
}

std::string Deflated(std::string_view bytes, int level) {
    Deflater deflater(level);
    deflater.Add(bytes);
    return deflater.Finish();
}

} // namespace kavidex::imaging
