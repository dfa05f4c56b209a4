// Checks a macOS program without a Mac.
//
//   node tools/check-macho.mjs ARCH MACOS_VERSION PROGRAM STUBS
//
// PROGRAM must be a 64-bit Mach-O executable for ARCH (arm64 or x86_64) that starts on MACOS_VERSION, uses no
// library but libSystem, carries a code signature where the system insists on one, and leaves undefined only what
// STUBS, the list of libSystem's symbols (.tbd), says that library provides. Writes the undefined symbols to
// PROGRAM.undefined.txt. Says what is wrong on standard error and exits with 1.
import { readFileSync, writeFileSync } from 'node:fs';

const [arch, macosVersion, programPath, stubsPath] = process.argv.slice(2);
const cpuTypes = { arm64: 0x0100000c, x86_64: 0x01000007 };
const libSystem = '/usr/lib/libSystem.B.dylib';
const problems = [];

// From <mach-o/loader.h> and <mach-o/nlist.h>.
const executable64 = 0xfeedfacf;
const mainProgram = 2;
const headerBytes = 32;
const command = {
    symbols: 0x2, library: 0xc, weakLibrary: 0x80000018, reexported: 0x8000001f, signature: 0x1d, build: 0x32,
};
const platformMacOS = 1;
const symbol = { bytes: 16, debugging: 0xe0, type: 0x0e, undefined: 0x00, external: 0x01 };

function zeroEnded(bytes, start) {
    return bytes.toString('utf8', start, bytes.indexOf(0, start));
}

function undefinedSymbols(bytes, table, count, names) {
    const found = [];
    for (let entry = table; entry < table + count * symbol.bytes; entry += symbol.bytes) {
        const type = bytes.readUInt8(entry + 4);
        const isUndefined = (type & symbol.debugging) === 0 && (type & symbol.external) !== 0
            && (type & symbol.type) === symbol.undefined;
        if (isUndefined) found.push(zeroEnded(bytes, names + bytes.readUInt32LE(entry)));
    }
    return found.sort();
}

function readProgram(bytes) {
    const program = { libraries: [], undefined: [], signed: false, platform: 0, minimum: 0 };
    if (bytes.length < headerBytes || bytes.readUInt32LE(0) !== executable64) {
        problems.push('is not a 64-bit Mach-O file');
        return program;
    }
    const cpu = bytes.readUInt32LE(4);
    if (cpu !== cpuTypes[arch]) problems.push(`is for processor type 0x${cpu.toString(16)}, not ${arch}`);
    if (bytes.readUInt32LE(12) !== mainProgram) problems.push('is not an executable program');

    let position = headerBytes;
    for (let left = bytes.readUInt32LE(16); left > 0; left--) {
        const field = (offset) => bytes.readUInt32LE(position + offset);
        switch (field(0)) {
        case command.library:
        case command.weakLibrary:
        case command.reexported:
            program.libraries.push(zeroEnded(bytes, position + field(8)));
            break;
        case command.signature:
            program.signed = true;
            break;
        case command.build:
            [program.platform, program.minimum] = [field(8), field(12)];
            break;
        case command.symbols:
            program.undefined = undefinedSymbols(bytes, field(8), field(12), field(16));
            break;
        }
        position += field(4);
    }
    return program;
}

// A .tbd file holds one YAML document per library that is part of libSystem. What a library exports of its own or
// passes on from another stands there as groups: a list of targets, and the lists of symbols that these have.
function providedSymbols(text) {
    const provided = new Set(['dyld_stub_binder']); // the loader's own, which every program may name
    for (const [, groups] of text.matchAll(/^(?:re)?exports:\n((?: .*\n)+)/gm)) {
        for (const group of groups.split(/^ *- targets:/m).slice(1)) {
            const [targets, ...symbols] = [...group.matchAll(/\[([^\]]*)\]/g)].map((list) =>
                list[1].split(',').map((word) => word.trim().replace(/^'(.*)'$/, '$1')));
            if (targets.includes(`${arch}-macos`)) symbols.flat().forEach((name) => provided.add(name));
        }
    }
    return provided;
}

const program = readProgram(readFileSync(programPath));
const provided = providedSymbols(readFileSync(stubsPath, 'utf8'));
const [major, minor] = macosVersion.split('.').map(Number);

if (program.platform !== platformMacOS || program.minimum !== major * 0x10000 + minor * 0x100)
    problems.push(`does not say that it is for macOS ${macosVersion} and later`);
if (arch === 'arm64' && !program.signed)
    problems.push('has no code signature, without which arm64 refuses to run it');
if (!program.libraries.includes(libSystem)) problems.push(`does not name ${libSystem}`);
for (const library of program.libraries)
    if (library !== libSystem) problems.push(`needs ${library}`);
if (program.undefined.length === 0) problems.push('has no undefined symbols at all, so nothing was checked');
for (const name of program.undefined)
    if (!provided.has(name)) problems.push(`needs ${name}, which macOS does not provide`);

writeFileSync(`${programPath}.undefined.txt`, program.undefined.join('\n') + '\n');
for (const problem of problems) console.error(`check-macho: ${programPath} ${problem}`);
if (problems.length > 0) process.exit(1);
console.error(`check-macho: ${programPath}: ${arch}, macOS ${macosVersion}, `
    + `${program.undefined.length} undefined symbols, all provided by libSystem`);
