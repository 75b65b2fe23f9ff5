// Bytes packed as PDF's Flate filter reads them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kavidex::imaging {

std::string Deflated(std::string_view bytes, int level = 6);

// The same in pieces.
class Deflater {
public:
    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    void Add(std::string_view bytes);
    std::string Finish();

private:
    struct State;
    void Run(int flush);

    std::unique_ptr<State> lclState;
    std::string lclResult;
};

} // namespace kavidex::imaging
