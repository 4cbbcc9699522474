// Writes seed inputs for a fuzz target into a directory, one file each:
//
//   quillon_fuzz_seeds device DIR [CASES]   the first CASES cases (16) of
//                                           every function's input generator
//                                           (the platform client's vectors),
//                                           encoded as the device target reads
//                                           them
//   quillon_fuzz_seeds survey DIR           hand-made calls of every survey
//                                           function that succeed
//
// fuzz/run.sh merges them into the corpus, keeping those that reach new code.
#include "device_input.hpp"
#include "survey_input.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

bool write_file(const std::string& path, const std::vector<std::uint8_t>& bytes)
{
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (out == nullptr) {
        std::perror(path.c_str());
        return false;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return std::fclose(out) == 0 && written;
}

int device_seeds(const std::string& dir, int cases)
{
    std::vector<unsigned char> in(qv_largest_block());
    std::vector<unsigned char> out(qv_largest_block());
    std::vector<unsigned char> scratch(qv_largest_scratch());
    int written = 0;
    for (std::size_t f = 0; f < qv_function_count; ++f) {
        const qv_function* fn = &qv_functions[f];
        for (int k = 0; k < cases && k < fn->cases; ++k) {
            void* args[QV_MAX_ARGS];
            qv_generate(fn, k, in.data());
            qv_bind(fn, in.data(), out.data(), scratch.data(), args);
            const std::string path = dir + "/" + fn->name + "-" + std::to_string(k);
            if (!write_file(path, qfuzz::encode_device_call(f, args))) {
                return 1;
            }
            ++written;
        }
    }
    std::printf("wrote %d seeds to %s\n", written, dir.c_str());
    return 0;
}

int survey_seeds(const std::string& dir)
{
    int written = 0;
    for (const qfuzz::Seed& seed : qfuzz::survey_seeds()) {
        if (!write_file(dir + "/" + seed.name, seed.bytes)) {
            return 1;
        }
        ++written;
    }
    std::printf("wrote %d seeds to %s\n", written, dir.c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc >= 3 && std::strcmp(argv[1], "device") == 0) {
        return device_seeds(argv[2], argc >= 4 ? std::atoi(argv[3]) : 16);
    }
    if (argc == 3 && std::strcmp(argv[1], "survey") == 0) {
        return survey_seeds(argv[2]);
    }
    std::fprintf(stderr, "usage: %s device DIR [CASES] | survey DIR\n", argv[0]);
    return 2;
}
