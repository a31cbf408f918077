// Runs a fuzz harness over every file of the corpus folders given, as an ordinary
// test: any sanitizer report or crash fails it.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size);

int main(int argc, char ** argv) {
   std::size_t files = 0;
   for (int i = 1; i < argc; ++i) {
      for (auto const & entry : std::filesystem::directory_iterator(argv[i])) {
         if (!entry.is_regular_file()) {
            continue;
         }
         std::ifstream in(entry.path(), std::ios::binary);
         std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
         LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
         ++files;
      }
   }
   std::printf("replayed %zu inputs\n", files);
   return files ? 0 : 1;
}
