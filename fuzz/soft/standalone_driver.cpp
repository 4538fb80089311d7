// A stand-in for libFuzzer's main where it is not available: runs the target
// once on every file named (directories: every file in them) and on the empty
// input, so a corpus can be replayed under any compiler and the sanitizers.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    std::vector<std::string> files;
    for (int i = 1; i < argc; i++) {
        std::error_code ec;
        if (std::filesystem::is_directory(argv[i], ec)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    files.push_back(entry.path().string());
        } else {
            files.push_back(argv[i]);
        }
    }
    LLVMFuzzerTestOneInput(nullptr, 0);
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "%s: cannot read\n", file.c_str());
            return 1;
        }
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs run\n", files.size() + 1);
    return 0;
}
