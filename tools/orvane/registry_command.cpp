#include "commands.h"
#include "registry/reg_file_reader.h"
#include "registry/reg_file_writer.h"
#include "registry/registry_store.h"
#include "registry/value_text.h"
#include "system.h"
#include "utf8.h"

#include "platform/kernel32.h"

namespace orvane::tool {

namespace {

/// A sub-command's words, its options taken out.
struct Request {
    std::vector<std::string> words;
    bool json = false;
    bool recursive = false;
    bool utf8 = false;
    ValueType type = ValueType::string;
};

/// The options that a sub-command has.
struct Options {
    bool json = false;
    bool recursive = false;
    bool utf8 = false;
    bool type = false;
};

ValueType typeNamed(const std::string& name) {
    const std::optional<ValueType> type = parseValueType(name);
    if (!type) throw UsageError("registry set: unknown type " + name);
    return *type;
}

/// Options may stand anywhere before `--`; a word with one dash is none, as values have them.
Request requestOf(Words words, const Options& known) {
    Request request;
    bool options = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!options || !word.starts_with("--")) {
            request.words.push_back(word);
        } else if (word == "--") {
            options = false;
        } else if (known.json && word == "--json") {
            request.json = true;
        } else if (known.recursive && word == "--recursive") {
            request.recursive = true;
        } else if (known.utf8 && word == "--utf8") {
            request.utf8 = true;
        } else if (known.type && word.starts_with("--type=")) {
            request.type = typeNamed(word.substr(7));
        } else if (known.type && word == "--type") {
            if (++i == words.size()) throw UsageError("registry set: --type needs a type");
            request.type = typeNamed(words[i]);
        } else {
            throw UsageError("unknown option " + word);
        }
    }
    return request;
}

void checkCount(const Request& request, std::size_t least, std::size_t most, const char* usage) {
    if (request.words.size() < least || request.words.size() > most) {
        throw UsageError(std::string("registry ") + usage);
    }
}

KeyName keyNamed(const std::string& text) {
    const std::optional<KeyName> key = parseKeyName(toUtf16(text));
    if (!key) {
        throw UsageError(text + ": no key of HKCU, HKLM, HKCR, HKU or HKCC (HKCU\\Software\\...)");
    }
    if (const char* flaw = flawOf(key->path); flaw != nullptr) {
        throw UsageError(text + ": " + flaw);
    }
    return *key;
}

std::u16string valueNamed(const std::string& text) {
    return text == "@" ? std::u16string() : toUtf16(text);
}

std::string shown(const std::u16string& valueName) {
    return valueName.empty() ? "@" : jsonString(toUtf8(valueName));
}

int runList(Words words) {
    const Request request = requestOf(words, {.json = true});
    checkCount(request, 1, 1, "list: needs one KEY");
    const KeyName key = keyNamed(request.words[0]);
    std::string lines;
    for (const std::u16string& each : subKeysOf(key)) {
        const std::string name = toUtf8(each);
        lines += request.json ? JsonObject().text("key", name).done() : "[" + printable(name) + "]";
        lines += "\n";
    }
    for (const FileValue& value : valuesOf(key)) {
        lines += request.json
                     ? jsonOf(value).done()
                     : shown(value.name) + "  " + nameOf(value.type) + "  " + quotedData(value);
        lines += "\n";
    }
    writeToOutput(lines);
    return kSuccess;
}

int runGet(Words words) {
    const Request request = requestOf(words, {.json = true});
    checkCount(request, 1, 2, "get: needs KEY and may have NAME");
    const std::string name = request.words.size() > 1 ? request.words[1] : std::string();
    const FileValue value = readValue(keyNamed(request.words[0]), valueNamed(name));
    writeToOutput(request.json ? jsonOf(value).done() + "\n" : plainData(value));
    return kSuccess;
}

int runSet(Words words) {
    const Request request = requestOf(words, {.type = true});
    if (request.words.size() < 2) throw UsageError("registry set: needs KEY, NAME and VALUE");
    FileValue value;
    value.name = valueNamed(request.words[1]);
    value.type = request.type;
    try {
        value.data = parseData(value.type, Words(request.words).subspan(2));
    } catch (const ValueTextError& error) {
        throw UsageError("registry set: " + nameOf(value.type) + ": " + error.what());
    }
    writeValue(keyNamed(request.words[0]), value);
    return kSuccess;
}

int runDelete(Words words) {
    const Request request = requestOf(words, {.recursive = true});
    checkCount(request, 1, 2, "delete: needs KEY and may have NAME");
    const KeyName key = keyNamed(request.words[0]);
    if (request.words.size() == 1) deleteKey(key, request.recursive);
    else if (request.recursive) throw UsageError("registry delete: --recursive is for keys");
    else deleteValue(key, valueNamed(request.words[1]));
    return kSuccess;
}

/// The text as UTF-8, in which not every registry file can be written.
std::string utf8Of(const std::u16string& text) {
    std::string bytes = toUtf8(text);
    if (toUtf16(bytes) != text) {
        throw Failure("a name or text is no Unicode text; leave --utf8 out");
    }
    return bytes;
}

int runExport(Words words) {
    const Request request = requestOf(words, {.utf8 = true});
    checkCount(request, 1, 2, "export: needs KEY and may have FILE");
    const RegistryFile file = exportedTree(keyNamed(request.words[0]));
    const bool toOutput = request.words.size() == 1 || request.words[1] == "-";
    if (toOutput && isTerminal(Stream::output)) {
        writeToOutput(toUtf8(registryFileText(file)));
        return kSuccess;
    }
    Bytes bytes;
    if (request.utf8) {
        const std::string text = utf8Of(registryFileText(file));
        bytes.assign(text.begin(), text.end());
    } else {
        bytes = registryFileBytes(file);
    }
    if (toOutput) writeToOutput({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    else replaceFile(request.words[1], bytes);
    return kSuccess;
}

int runImport(Words words) {
    const Request request = requestOf(words, {});
    checkCount(request, 1, 1, "import: needs one FILE");
    const std::string& name = request.words[0];
    const std::string text = name == "-" ? readInput() : readFile(name);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    try {
        importAll(readRegistryFile({bytes, text.size()}, platform::ansiCodePage()));
    } catch (const RegistryFileError& error) {
        throw Failure((name == "-" ? "standard input" : name) + ": " + error.what());
    }
    return kSuccess;
}

}  // namespace

int runRegistry(Words words) {
    if (words.empty()) throw UsageError("registry: no command");
    const std::string& command = words[0];
    const Words rest = words.subspan(1);
    if (command == "list") return runList(rest);
    if (command == "get") return runGet(rest);
    if (command == "set") return runSet(rest);
    if (command == "delete") return runDelete(rest);
    if (command == "export") return runExport(rest);
    if (command == "import") return runImport(rest);
    throw UsageError("registry: unknown command " + command);
}

}  // namespace orvane::tool
