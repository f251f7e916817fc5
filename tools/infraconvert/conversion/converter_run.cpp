#include "conversion/converter_run.h"

#include "base/errors.h"
#include "conversion/runner_process.h"
#include "runner/protocol.h"

namespace infraconvert {

namespace {

namespace fs = std::filesystem;
using runner::kind_t;
using runner::message_t;

// A converter rewrites some ten megabytes in a second. The time is counted in waits for the next
// message, so that a command that was stopped by its user goes on as if nothing had been.
constexpr std::chrono::seconds one_wait{1}, limit_for_any{60}, limit_for_a_megabyte{60};
constexpr size_t megabyte = 1 << 20;

std::chrono::seconds limit_of(const call_t &call) {
    if (call.limit.count() > 0)
        return call.limit;
    return limit_for_any + limit_for_a_megabyte * static_cast<int>(call.text->size() / megabyte);
}

void append_number(std::string &job, uint32_t number) {
    job.append(reinterpret_cast<const char *>(&number), sizeof number);
}

std::string job_of(const call_t &call) {
    const auto &[from, to] = call.releases;
    std::string job;
    job.reserve(call.text->size() + from.size() + to.size() + 100);
    for (const size_t size : {from.size(), to.size(), call.services.size()})
        append_number(job, static_cast<uint32_t>(size));
    job += from + to;
    for (const service_t *service : call.services)
        append_number(job, service->uuid);
    return job += *call.text;
}

std::map<std::string, std::string> logs_in(const fs::path &directory) {
    std::map<std::string, std::string> logs;
    for (const auto &entry : fs::directory_iterator(directory))
        logs[entry.path().filename()] = read_file(entry.path());
    return logs;
}

// Reads the answers to one call.
class listener_t {
  public:
    listener_t(const call_t &c, int s) : call(c), socket(s), text(c.text) {}

    // False when infraconvert-run is gone.
    bool listen() {
        while (!ended) {
            if (const auto message = runner::receive(socket))
                take(*message);
            else if (errno != EAGAIN)
                return false;
            else if (++waits * one_wait >= limit_of(call))
                give_up();
        }
        return true;
    }

    converter_run_t run;

  private:
    void take(const message_t &message) {
        waits = 0;
        switch (message.kind) {
        case kind_t::piece:
            pieces += message.bytes;
            break;
        case kind_t::place:
            logs = message.bytes;
            break;
        case kind_t::step_ended:
            take_step(message);
            break;
        case kind_t::refused:
            throw run_error_t(message.bytes);
        case kind_t::child_ended:
            take_end(message);
        }
    }

    void take_step(const message_t &message) {
        runner::step_ended_t step = {};
        runner::read_record(message, step);
        if (step.changed && pieces != *text)
            text = std::make_shared<const std::string>(std::move(pieces));
        pieces.clear();
        run.steps.push_back({step.status, text});
    }

    void take_end(const message_t &message) {
        int status = 0;
        runner::read_record(message, status);
        const bool complete = run.steps.size() == call.services.size() ||
                              (!run.steps.empty() && run.steps.back().status != 0);
        if (!complete)
            run.trouble = fate(status);
        end();
    }

    void give_up() {
        run.trouble = "did not end within " + std::to_string(limit_of(call).count()) +
                      " seconds and was stopped";
        end();
    }

    // The logs are there as long as the socket is open.
    void end() {
        ended = true;
        if (!logs.empty())
            run.logs = logs_in(logs);
    }

    const call_t &call;
    const int socket;
    shared_text_t text; // after the steps so far
    std::string pieces; // of the text after the step at hand
    fs::path logs;
    int waits = 0; // since the last message
    bool ended = false;
};

} // namespace

converter_run_t run_converters(const call_t &call) {
    const std::string job = job_of(call);
    const runner::request_t request = {job.size(), call.text->size(), call.wants_logs};
    std::string end;
    for (int attempt = 0; attempt < 2; attempt++) {
        const answers_t answers = runner_process_t::shared().request(request, one_wait);
        listener_t listener(call, answers.socket.descriptor());
        // A job that is not taken has a reason, which the answers tell.
        runner::send_in_pieces(answers.socket.descriptor(), job);
        if (listener.listen())
            return std::move(listener.run);
        end = runner_process_t::shared().note_end(answers.program);
    }
    throw run_error_t("infraconvert-run, which runs the converters, ended twice: it " + end);
}

} // namespace infraconvert
