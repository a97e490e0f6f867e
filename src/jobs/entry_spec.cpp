#include "jobs/entry_spec.h"

#include <array>
#include <set>

#include "support/text.h"

namespace carvello {
namespace {

// Puts what a parser has read into a field of its own. False when it has read nothing.
template <typename Parsed, typename Field>
bool Take(const std::optional<Parsed>& parsed, Field& field) {
  if (parsed) field = *parsed;
  return parsed.has_value();
}

struct SFieldKind {
  const char* pEntryName;  // null for one that only job files have
  const char* pJobFileName;
  const char* pAccepted;
  bool (*set)(std::string_view, SEntrySpec&);

  const char* Name(EFieldNames names) const { return names == EFieldNames::Entry ? pEntryName : pJobFileName; }
};

constexpr std::array<SFieldKind, kFieldCount> kFieldKinds = {{
    {"f", "frequency", kFrequencyForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseFrequency(text), spec.frequency); }},
    {"bw", "bandwidth", kFrequencyForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseFrequency(text), spec.bandwidth); }},
    {"bits", "bits", "16 or 32",
     [](std::string_view text, SEntrySpec& spec) {
       spec.b32Bit = text == "32";
       return text == "16" || text == "32";
     }},
    {"size", "size", kFileSizeForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseFileSize(text), spec.nFileSizeMB); }},
    {"format", "format", kFormatForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseFormat(text), spec.format); }},
    {"start", "start", kMomentForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseMoment(text), spec.start); }},
    {"end", "end", kMomentForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseMoment(text), spec.end); }},
    {"duration", "duration", kDurationForms,
     [](std::string_view text, SEntrySpec& spec) { return Take(ParseDuration(text), spec.duration); }},
    {nullptr, "output", "a folder",
     [](std::string_view text, SEntrySpec& spec) {
       spec.strOutput = text;
       return !text.empty() && text.find('\0') == std::string_view::npos;
     }},
    {nullptr, "number", "a whole number from 1 to 100000",
     [](std::string_view text, SEntrySpec& spec) {
       const std::optional<std::int64_t> number = ParseDecimal(text, 0, kMostEntries);
       spec.nNameNumber = static_cast<int>(number.value_or(0));
       return spec.nNameNumber > 0;
     }},
}};

const SFieldKind* FindKind(const std::string& name, EFieldNames names) {
  for (const SFieldKind& kind : kFieldKinds) {
    const char* const pName = kind.Name(names);
    if (pName != nullptr && pName == name) return &kind;
  }
  return nullptr;
}

std::string FieldNames(EFieldNames names) {
  std::string list;
  for (const SFieldKind& kind : kFieldKinds) {
    if (kind.Name(names) != nullptr) list += (list.empty() ? "" : ", ") + std::string(kind.Name(names));
  }
  return list;
}

}  // namespace

bool SetFields(const FieldTexts& fields, EFieldNames names, SEntrySpec& spec, std::string& error) {
  std::set<std::string> seen;
  for (const auto& [name, value] : fields) {
    const SFieldKind* kind = FindKind(name, names);
    if (kind == nullptr) {
      error = Format("unknown key \"%s\". Accepted: %s", Printable(name).c_str(), FieldNames(names).c_str());
      return false;
    }
    if (!seen.insert(name).second) {
      error = Format("\"%s\" is given twice", Printable(name).c_str());
      return false;
    }
    if (!kind->set(value, spec)) {
      error = Format("%s \"%s\" cannot be read. Accepted: %s", name.c_str(), Printable(value).c_str(), kind->pAccepted);
      return false;
    }
  }
  if (spec.format == EOutputFormat::SigMf && seen.contains("size")) {
    error =
        "size and format=sigmf exclude each other: the samples of a SigMF recording are one file. Accepted: one of "
        "them";
    return false;
  }
  if (spec.end && spec.duration) {
    error = "end and duration exclude each other. Accepted: one of them, or none for the recording's end";
    return false;
  }
  return true;
}

bool SetEntryFields(const FieldTexts& fields, EFieldNames names, SEntrySpec& spec, std::string& error) {
  if (!SetFields(fields, names, spec, error)) return false;
  if (spec.frequency && spec.bandwidth) return true;
  const SFieldKind& missing = kFieldKinds[spec.frequency ? 1 : 0];
  error = Format("%s is missing. Accepted: %s", missing.Name(names), missing.pAccepted);
  return false;
}

bool ParseEntry(std::string_view text, SEntrySpec& spec, std::string& error) {
  FieldTexts fields;
  while (true) {
    const std::size_t comma = text.find(',');
    const std::string_view field = text.substr(0, comma);
    const std::size_t equals = field.find('=');
    if (equals == std::string_view::npos) {
      error = Format("\"%s\" is no key=value. Accepted keys: %s, separated by commas, for example f=7.1M,bw=10k",
                     Printable(field).c_str(), FieldNames(EFieldNames::Entry).c_str());
      return false;
    }
    fields.emplace_back(field.substr(0, equals), field.substr(equals + 1));
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  return SetEntryFields(fields, EFieldNames::Entry, spec, error);
}

bool ParseFrequencyRange(std::string_view text, SFrequencyRange& range, std::string& error) {
  const std::size_t first = text.find(':');
  const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
  std::optional<std::int64_t> from;
  std::optional<std::int64_t> to;
  std::optional<std::int64_t> step;
  if (second != std::string_view::npos) {
    from = ParseFrequency(text.substr(0, first));
    to = ParseFrequency(text.substr(first + 1, second - first - 1));
    step = ParseFrequency(text.substr(second + 1));
  }
  if (!from || !to || !step || *step <= 0) {
    error = Format("no sequence. Accepted: FROM:TO:STEP, each %s, the step above 0; for example 900k:1M:10k",
                   kFrequencyForms);
    return false;
  }
  range = {*from, *to, *step};
  if (range.Count() > kMostEntries) {
    error = Format("%lld entries. Accepted: at most %lld", static_cast<long long>(range.Count()),
                   static_cast<long long>(kMostEntries));
    return false;
  }
  return true;
}

}  // namespace carvello
