#include "host/module_loader.h"

#include <QFile>

#include <gtest/gtest.h>

#include <elf.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

// The names of the symbols a 64-bit ELF shared object exports: defined in its dynamic symbol
// table with a binding other than local (a local entry the linker left there binds nothing).
// The section headers of a 64-bit ELF file; none when it is not one.
std::vector<Elf64_Shdr> sections(const QByteArray& file) {
    std::vector<Elf64_Shdr> found;
    if (file.size() < qsizetype(sizeof(Elf64_Ehdr)))
        return found;
    Elf64_Ehdr header;
    std::memcpy(&header, file.constData(), sizeof header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64)
        return found;
    for (int index = 0; index < header.e_shnum; ++index) {
        Elf64_Shdr section{};
        const qsizetype offset = qsizetype(header.e_shoff + index * header.e_shentsize);
        if (offset + qsizetype(sizeof section) <= file.size())
            std::memcpy(&section, file.constData() + offset, sizeof section);
        found.push_back(section);
    }
    return found;
}

// The names of the symbols a 64-bit ELF shared object exports: defined in its dynamic symbol
// table with a binding other than local (a local entry the linker left there binds nothing).
std::set<std::string> definedDynamicSymbols(const QByteArray& file) {
    std::set<std::string> names;
    const std::vector<Elf64_Shdr> all = sections(file);
    for (const Elf64_Shdr& symbols : all) {
        if (symbols.sh_type != SHT_DYNSYM || symbols.sh_link >= all.size())
            continue;
        const Elf64_Shdr& strings = all[symbols.sh_link];
        for (std::size_t at = symbols.sh_offset + sizeof(Elf64_Sym);
             at + sizeof(Elf64_Sym) <= symbols.sh_offset + symbols.sh_size;
             at += sizeof(Elf64_Sym)) {
            Elf64_Sym symbol;
            std::memcpy(&symbol, file.constData() + at, sizeof symbol);
            if (symbol.st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol.st_info) == STB_LOCAL)
                continue;
            names.insert(file.constData() + strings.sh_offset + symbol.st_name);
        }
    }
    return names;
}

// The libraries a 64-bit ELF file needs (its DT_NEEDED entries), as `readelf -d` lists them.
std::set<std::string> neededLibraries(const QByteArray& file) {
    std::set<std::string> names;
    const std::vector<Elf64_Shdr> all = sections(file);
    for (const Elf64_Shdr& dynamic : all) {
        if (dynamic.sh_type != SHT_DYNAMIC || dynamic.sh_link >= all.size())
            continue;
        const Elf64_Shdr& strings = all[dynamic.sh_link];
        for (std::size_t at = dynamic.sh_offset;
             at + sizeof(Elf64_Dyn) <= dynamic.sh_offset + dynamic.sh_size;
             at += sizeof(Elf64_Dyn)) {
            Elf64_Dyn entry;
            std::memcpy(&entry, file.constData() + at, sizeof entry);
            if (entry.d_tag == DT_NEEDED)
                names.insert(file.constData() + strings.sh_offset + entry.d_un.d_val);
        }
    }
    return names;
}

QByteArray readFile(const char* path) {
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Only the host talks to ModemManager: loading the module or the telephony library never
// loads QtDBus.
TEST(ExportTable, NeitherTheModuleNorTheTelephonyLibraryNeedsQtDBus) {
    for (const char* path : {TESSALY_SMS_MODULE_PATH, TESSALY_GSM_LIBRARY_PATH}) {
        const std::set<std::string> needed = neededLibraries(readFile(path));
        EXPECT_TRUE(needed.count("libtessaly-framework.so")) << path << ": the ELF reading works";
        for (const std::string& library : needed)
            EXPECT_EQ(library.find("DBus"), std::string::npos) << path << " needs " << library;
    }
}

TEST(ExportTable, TheModuleDefinesExactlyItsNineEntryPoints) {
    QFile module(QStringLiteral(TESSALY_SMS_MODULE_PATH));
    ASSERT_TRUE(module.open(QIODevice::ReadOnly)) << TESSALY_SMS_MODULE_PATH;
    const std::set<std::string> defined = definedDynamicSymbols(module.readAll());

    std::set<std::string> expected;
    for (const tessaly::host::ExportName& name : tessaly::host::smsExportNames())
        expected.insert(name.symbol);
    EXPECT_EQ(defined, expected) << "nothing but the entry points may be visible: no Qt or "
                                    "standard-library instantiations, no static objects";
}

} // namespace
