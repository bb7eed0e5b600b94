// The fuzz targets without the fuzzer: gives each file of the folders and files named to the target once.

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv);

namespace {

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return false;
    }
    const QByteArray input = file.readAll();
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout); // it is the last one named when the target ends here
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                           static_cast<std::size_t>(input.size()));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (LLVMFuzzerInitialize != nullptr) {
        LLVMFuzzerInitialize(&argc, &argv);
    }
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        if (!QFileInfo(path).isDir()) {
            inputs += replay(path) ? 1 : 0;
            continue;
        }
        for (QDirIterator files(path, QDir::Files | QDir::Hidden); files.hasNext();) {
            inputs += replay(files.next()) ? 1 : 0;
        }
    }
    if (inputs == 0) {
        std::fprintf(stderr, "there is no input\n");
    }
    return inputs == 0 ? 1 : 0;
}
