#include "host/module_loader.h"

#include <QFile>

#include <gtest/gtest.h>

#include <elf.h>

#include <cstring>
#include <set>
#include <string>

namespace {

// The names of the symbols a 64-bit ELF shared object exports: defined in its dynamic symbol
// table with a binding other than local (a local entry the linker left there binds nothing).
std::set<std::string> definedDynamicSymbols(const QByteArray& file) {
    std::set<std::string> names;
    if (file.size() < qsizetype(sizeof(Elf64_Ehdr)))
        return names;
    Elf64_Ehdr header;
    std::memcpy(&header, file.constData(), sizeof header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64)
        return names;
    auto sectionAt = [&file, &header](int index) {
        Elf64_Shdr section{};
        const qsizetype offset = qsizetype(header.e_shoff + index * header.e_shentsize);
        if (offset + qsizetype(sizeof section) <= file.size())
            std::memcpy(&section, file.constData() + offset, sizeof section);
        return section;
    };
    for (int i = 0; i < header.e_shnum; ++i) {
        const Elf64_Shdr symbols = sectionAt(i);
        if (symbols.sh_type != SHT_DYNSYM)
            continue;
        const Elf64_Shdr strings = sectionAt(int(symbols.sh_link));
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
