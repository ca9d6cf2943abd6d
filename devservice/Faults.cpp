#include "Faults.h"

#include "Arguments.h"
#include "Refusal.h"

namespace DevService {
namespace {

constexpr std::uint64_t max_count = 1'000'000'000'000;

/// Headers as an object, or as an array of pairs where names repeat.
std::vector<Header> ReadHeaders(const rapidjson::Value& i_value) {
    std::vector<Header> headers;
    const auto add = [&](const rapidjson::Value& i_name, const rapidjson::Value& i_text) {
        if (!i_name.IsString() || !i_text.IsString())
            throw BadArguments("headers: names and values are strings");
        headers.emplace_back(TextOf(i_name), TextOf(i_text));
    };
    if (i_value.IsObject()) {
        for (const auto& member : i_value.GetObject())
            add(member.name, member.value);
    } else if (i_value.IsArray()) {
        for (const auto& pair : i_value.GetArray()) {
            if (!pair.IsArray() || pair.Size() != 2)
                throw BadArguments("headers: an array holds [name, value] pairs");
            add(pair[0], pair[1]);
        }
    } else {
        throw BadArguments("headers: an object or an array of pairs");
    }
    return headers;
}

std::chrono::milliseconds ReadTime(Arguments& io_arguments, std::string_view i_name) {
    return std::chrono::milliseconds(io_arguments.OptionalNumber(i_name, 0, 3'600'000).value_or(0));
}

/// A made-up 429 as the service gives it, whose error has no tag of its own.
void ReadRateLimit(Arguments& io_arguments, Fault& io_fault) {
    const auto reason = io_arguments.OneOf("rate_limit", "", {"too_many_requests", "too_many_write_operations"}).tag;
    const std::string seconds = std::to_string(io_arguments.OptionalNumber("retry_after", 0, 86'400).value_or(1));
    if (reason.empty())
        return;
    io_fault.status = 429;
    io_fault.headers.emplace_back("Content-Type", "application/json");
    io_fault.headers.emplace_back("Retry-After", seconds);
    io_fault.body = R"({"error_summary": ")" + reason + R"(/", "error": {"reason": {".tag": ")" + reason +
                    R"("}, "retry_after": )" + seconds + "}}";
}

Fault ReadFault(Arguments& io_arguments) {
    Fault fault;
    if (const auto status = io_arguments.OptionalNumber("status", 100, 599))
        fault.status = static_cast<unsigned>(*status);
    fault.reason = io_arguments.OptionalText("reason").value_or("");
    if (const rapidjson::Value* headers = io_arguments.Member("headers"))
        fault.headers = ReadHeaders(*headers);
    fault.body = io_arguments.OptionalText("body");
    ReadRateLimit(io_arguments, fault);
    fault.is_real = io_arguments.Flag("real", false);
    fault.delay = ReadTime(io_arguments, "delay_ms");
    fault.truncate_at = io_arguments.OptionalNumber("truncate_body", 0, max_count);
    fault.pause = ReadTime(io_arguments, "slow_body_ms");
    fault.piece_size = io_arguments.OptionalNumber("piece", 1, max_count).value_or(0);
    fault.is_chunked = io_arguments.Flag("chunked", false);
    fault.drop_after = io_arguments.OptionalNumber("drop_request_after", 0, max_count);
    return fault;
}

} // namespace

void Fault::ApplyTo(Reply& io_reply) const {
    if (status) {
        io_reply.status = *status;
        io_reply.reason.clear();
    }
    if (!reason.empty())
        io_reply.reason = reason;
    if (body) {
        io_reply.body = *body;
        io_reply.file.reset();
    }
    io_reply.is_chunked = is_chunked;
    io_reply.headers.insert(io_reply.headers.end(), headers.begin(), headers.end());
}

void Faults::Add(std::string_view i_json) {
    Arguments arguments(i_json, "fault");
    Rule rule;
    rule.path = arguments.Text("path");
    rule.skip = arguments.OptionalNumber("skip", 0, max_count).value_or(0);
    rule.times = arguments.OptionalNumber("times", 0, max_count).value_or(1);
    rule.fault = ReadFault(arguments);
    arguments.Finish();
    const std::lock_guard lock(m_mutex);
    m_rules.push_back(std::move(rule));
}

void Faults::Clear() {
    const std::lock_guard lock(m_mutex);
    m_rules.clear();
}

std::optional<Fault> Faults::Match(std::string_view i_target) {
    if (i_target.starts_with('/'))
        i_target.remove_prefix(1);
    const std::lock_guard lock(m_mutex);
    for (auto rule = m_rules.begin(); rule != m_rules.end(); ++rule) {
        if (!i_target.starts_with(rule->path))
            continue;
        if (rule->skip > 0) {
            --rule->skip;
            continue;
        }
        Fault fault = rule->fault;
        if (rule->times == 1)
            m_rules.erase(rule);
        else if (rule->times > 1)
            --rule->times;
        return fault;
    }
    return std::nullopt;
}

void Faults::Pause(std::chrono::milliseconds i_time) {
    std::unique_lock lock(m_mutex);
    m_stopping.wait_for(lock, i_time, [this] { return m_is_stopping; });
}

void Faults::Stop() {
    const std::lock_guard lock(m_mutex);
    m_is_stopping = true;
    m_stopping.notify_all();
}

} // namespace DevService
