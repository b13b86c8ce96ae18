// Opens, reads and closes every folder that a file names, one a line. No search without an index can be faster.
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

int main(int count, char** words) {
    const int file = count == 2 ? open(words[1], O_RDONLY | O_CLOEXEC) : -1;
    std::string names;
    static std::array<char, 32768> block;
    for (ssize_t size = 0; (size = read(file, block.data(), block.size())) > 0;) {
        names.append(block.data(), static_cast<std::size_t>(size));
    }
    for (std::size_t begin = 0; begin < names.size();) {
        const auto end = names.find('\n', begin);
        names[end] = '\0';
        const int folder = open(&names[begin], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0) {
            std::perror(&names[begin]);
            return 2;
        }
        while (syscall(SYS_getdents64, folder, block.data(), block.size()) > 0) {
        }
        close(folder);
        begin = end + 1;
    }
    return file < 0 || names.empty() ? 2 : 0;
}
