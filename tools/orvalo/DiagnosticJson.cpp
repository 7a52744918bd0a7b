#include "DiagnosticJson.h"

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "CheckedFile.h"
#include "Input.h"

namespace {

using Json = nlohmann::ordered_json;

/// Line and column of what has a place; null of what has none.
void AddPlace(Json& entry, const Input& input, const orvalo::InputPlace& place) {
    const bool placed = !place.path.empty();
    entry["path"] = placed ? Json(input.Shown(place.path)) : Json();
    entry["line"] = placed ? Json(place.line) : Json();
    entry["column"] = placed ? Json(place.column) : Json();
}

void AddExtent(Json& entry, const Input& input, const orvalo::InputPlace& place, std::uint64_t length) {
    AddPlace(entry, input, place);
    entry["offset"] = place.path.empty() ? Json() : Json(place.offset);
    entry["length"] = length;
}

Json ToJson(const orvalo::Note& note, const Input& input) {
    Json entry;
    entry["message"] = input.ShownMessage(note.message);
    AddExtent(entry, input, note.place, note.length);
    return entry;
}

Json ToJson(const orvalo::Fix& fix, const Input& input) {
    return {{"path", input.Shown(fix.place.path)},
            {"offset", fix.place.offset},
            {"length", fix.length},
            {"replacement", fix.replacement}};
}

Json ToJson(const orvalo::Diagnostic& diagnostic, const Input& input) {
    Json entry;
    entry["severity"] = diagnostic.severity == orvalo::Severity::Error ? "error" : "warning";
    entry["code"] = diagnostic.code;
    entry["rule"] = diagnostic.rule;
    entry["message"] = input.ShownMessage(diagnostic.message);
    AddExtent(entry, input, diagnostic.place, diagnostic.length);
    entry["row"] = diagnostic.row > 0 ? Json(diagnostic.row) : Json();
    entry["expected"] = diagnostic.expected;
    for (const char* list : {"notes", "fixes", "includedFrom"}) entry[list] = Json::array();
    for (const orvalo::Note& note : diagnostic.notes) entry["notes"].push_back(ToJson(note, input));
    for (const orvalo::Fix& fix : diagnostic.fixes) entry["fixes"].push_back(ToJson(fix, input));
    for (const orvalo::InputPlace& place : diagnostic.includedFrom) {
        AddPlace(entry["includedFrom"].emplace_back(), input, place);
    }
    return entry;
}

}  // namespace

Json ToJson(const CheckedFile& file) {
    Json entry;
    entry["path"] = file.input.Name();
    entry["kind"] = file.kind == FileKind::model ? "model" : "results";
    entry["ok"] = file.Errors() == 0;
    entry["problems"] = Json::array();
    for (const orvalo::Diagnostic& diagnostic : file.diagnostics) {
        entry["problems"].push_back(ToJson(diagnostic, file.input));
    }
    return entry;
}
