// live_server.cpp: the live panel's simulation loop and its HTTP side.
//
// [SECTION] Shared between the threads
// [SECTION] Text helpers
// [SECTION] Publishing a frame
// [SECTION] Commands from the page
// [SECTION] HTTP
// [SECTION] The loop
#include "live_server.h"

#include "cdu_keys.h"
#include "png_out.h"
#include "simulator.h"

// Orb_FlightPlan's rows, read as any outside gauge reads them: on the panel
// thread, with the module's own layout.
#include "../../src/plan/plan_tables.h"

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace orbsim {

// [SECTION] Shared between the threads
namespace {

constexpr size_t kMaxCommandBytes = 4096;       // a script line's limit
constexpr size_t kMaxTrackPoints = 2000;        // the moving map's flown path; thinned beyond
constexpr int kPngLevel = 1;                    // fast: a frame's pictures are encoded 25 times a second
constexpr auto kCommandWait = std::chrono::seconds(10);
constexpr auto kEventWait = std::chrono::milliseconds(500);

std::atomic<bool> g_stop_requested{false};
void OnStopSignal(int) { g_stop_requested = true; }

struct PendingCommand {
    std::string line;                           // a script line, or "?WHAT" for a value
    std::promise<std::pair<bool, std::string>> done;  // ok, and the reply or the error
};

struct GaugePicture {
    std::string png_base64;                     // the latest picture
    uint64_t version = 0;                       // raised with each new picture
};

struct Published {
    std::mutex mutex;
    std::condition_variable changed;
    uint64_t sequence = 0;                      // frames published
    std::string head_json;                      // windows, gauges' places, aircraft, track, route
    std::vector<std::string> gauge_ids;         // "NAME#ORDINAL", in panel order
    std::vector<GaugePicture> pictures;         // by panel order
    std::deque<std::shared_ptr<PendingCommand>> commands;
    bool stopping = false;
};

// [SECTION] Text helpers
std::string JsonText(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
            out += buffer;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

std::string JsonNumber(double value) {
    if (!std::isfinite(value)) return "null";
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

std::string Base64(const std::string& bytes) {
    static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        uint32_t v = static_cast<uint8_t>(bytes[i]) << 16 | static_cast<uint8_t>(bytes[i + 1]) << 8 |
                     static_cast<uint8_t>(bytes[i + 2]);
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += kAlphabet[v & 63];
    }
    if (i + 1 == bytes.size()) {
        uint32_t v = static_cast<uint8_t>(bytes[i]) << 16;
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += "==";
    } else if (i + 2 == bytes.size()) {
        uint32_t v = static_cast<uint8_t>(bytes[i]) << 16 | static_cast<uint8_t>(bytes[i + 1]) << 8;
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += '=';
    }
    return out;
}

std::string GaugeId(const GaugeInstance& inst) { return inst.name + "#" + std::to_string(inst.ordinal); }

// [SECTION] Publishing a frame
struct LoopState {
    std::vector<uint64_t> sent_digests;         // each gauge's digest when its picture was last made
    std::vector<std::pair<int, int>> sizes;     // each gauge's picture, width and height
    std::vector<std::pair<double, double>> track;  // lat, lon
    double track_next = 0;                      // simulated time of the next point
    double track_spacing = 1;                   // seconds; doubles as the path thins
};

// The active plan's rows through the module's exported pointer, if it has one.
std::string RouteJson(const HostState& host) {
    std::string out = "[";
    for (const ModuleVariable& v : host.module_vars) {
        if (v.name != "Orb_FlightPlan" || v.pointer == nullptr) continue;
        const auto* rows = static_cast<const PlanWaypoint*>(v.pointer);
        bool first = true;
        for (int i = 0; i < kPlanRows; ++i) {
            const PlanWaypoint& row = rows[i];
            if (row.Ident[0] == 0) break;
            if (row.Latitude == 0 && row.Longitude == 0) continue;  // DISCO, THEN and their like
            std::string ident(row.Ident.data(), strnlen(row.Ident.data(), row.Ident.size()));
            out += first ? "" : ",";
            out += "[" + JsonNumber(row.Latitude) + "," + JsonNumber(row.Longitude) + "," + JsonText(ident) + "]";
            first = false;
        }
        break;
    }
    return out + "]";
}

void RecordTrack(HostState& host, LoopState& loop) {
    double now = host.aircraft.sim_time;
    if (now < loop.track_next) return;
    loop.track.emplace_back(host.aircraft.lat, host.aircraft.lon);
    loop.track_next = now + loop.track_spacing;
    if (loop.track.size() >= kMaxTrackPoints) {
        // Every second point goes: a flight of any length fits the same memory.
        size_t kept = 0;
        for (size_t i = 0; i < loop.track.size(); i += 2) loop.track[kept++] = loop.track[i];
        loop.track.resize(kept);
        loop.track_spacing *= 2;
    }
}

void PublishFrame(HostState& host, ScriptRun& run, LoopState& loop, Published& shared) {
    GaugeStore& store = host.gauges;
    const size_t count = store.instances.size();
    loop.sent_digests.resize(count, 0);
    if (loop.sizes.size() != count) {
        loop.sizes.clear();
        for (size_t i = 0; i < count; ++i) {
            Bitmap picture = ComposeInstance(*store.instances[i]);
            loop.sizes.emplace_back(picture.width, picture.height);
        }
    }

    // 1. New pictures of the gauges that changed, outside the lock.
    std::vector<std::pair<size_t, std::string>> fresh;
    for (size_t i = 0; i < count; ++i) {
        const GaugeInstance& inst = *store.instances[i];
        const PanelWindow& window = store.windows[static_cast<size_t>(inst.window)];
        if (window.virtual_cockpit || !window.visible || inst.draws == 0) continue;
        if (loop.sent_digests[i] == inst.pixels_digest && loop.sent_digests[i] != 0) continue;
        std::string png;
        if (!EncodePng(ComposeInstance(inst), kPngLevel, png)) continue;
        loop.sent_digests[i] = inst.pixels_digest;
        fresh.emplace_back(i, Base64(png));
    }

    // 2. Windows and the places of their gauges.
    std::string head = "{\"windows\":[";
    for (size_t w = 0; w < store.windows.size(); ++w) {
        const PanelWindow& window = store.windows[w];
        if (window.virtual_cockpit) continue;
        head += (head.back() == '[' ? "" : ",");
        head += "{\"ident\":" + std::to_string(window.ident) + ",\"title\":" + JsonText(window.section) +
                ",\"visible\":" + (window.visible ? "true" : "false") + ",\"gauges\":[";
        bool first = true;
        for (size_t i = 0; i < count; ++i) {
            const GaugeInstance& inst = *store.instances[i];
            if (static_cast<size_t>(inst.window) != w) continue;
            head += first ? "" : ",";
            head += "{\"id\":" + JsonText(GaugeId(inst)) + ",\"index\":" + std::to_string(i) +
                    ",\"x\":" + std::to_string(inst.x) + ",\"y\":" + std::to_string(inst.y) +
                    ",\"w\":" + std::to_string(inst.w) + ",\"h\":" + std::to_string(inst.h) +
                    ",\"width\":" + std::to_string(loop.sizes[i].first) +
                    ",\"height\":" + std::to_string(loop.sizes[i].second) + "}";
            first = false;
        }
        head += "]}";
    }
    head += "]";

    // 3. The aircraft's side panel, the flown path and the route.
    head += ",\"aircraft\":{";
    static const char* const kFields[] = {"lat", "lon", "alt", "hdg", "ias", "gs", "vs", "hdg_bug", "ap_alt",
                                          "ap_spd", "ap_vs", "wind_dir", "wind_speed", "rate", "paused", "time",
                                          "ap", "ap_hdg_hold", "ap_nav_hold", "ap_alt_hold", "ap_spd_hold"};
    bool first = true;
    for (const char* field : kFields) {
        ScriptValue value;
        std::string why;
        if (!EvaluateWhat(host, run, std::string("aircraft.") + field, value, why)) continue;
        head += first ? "" : ",";
        head += JsonText(field) + ":" + (value.is_text ? JsonText(value.text) : JsonNumber(value.number));
        first = false;
    }
    head += "},\"track\":[";
    for (size_t i = 0; i < loop.track.size(); ++i)
        head += (i ? "," : "") + std::string("[") + JsonNumber(loop.track[i].first) + "," +
                JsonNumber(loop.track[i].second) + "]";
    head += "],\"route\":" + RouteJson(host) + "}";

    // 4. Hand over; the event streams wake.
    {
        std::lock_guard<std::mutex> lock(shared.mutex);
        shared.head_json = std::move(head);
        shared.gauge_ids.resize(count);
        shared.pictures.resize(count);
        for (size_t i = 0; i < count; ++i) shared.gauge_ids[i] = GaugeId(*store.instances[i]);
        for (auto& [index, picture] : fresh) {
            shared.pictures[index].png_base64 = std::move(picture);
            ++shared.pictures[index].version;
        }
        ++shared.sequence;
    }
    shared.changed.notify_all();
}

// [SECTION] Commands from the page
// One line as a script's: parsed, checked, then run. Never throws, never
// stops the loop: a bad line is the page's error.
std::pair<bool, std::string> RunPageCommand(HostState& host, ScriptRun& run, const std::string& line) {
    if (!line.empty() && line[0] == '?') {
        ScriptValue value;
        std::string why;
        if (!EvaluateWhat(host, run, line.substr(1), value, why)) return {false, why};
        return {true, value.is_text ? value.text : JsonNumber(value.number)};
    }
    std::vector<ScriptLine> lines;
    std::string error;
    if (!ParseScript("page", line, lines, error)) return {false, error};
    if (lines.size() != 1) return {false, "page: one command a request"};
    if (!LiveCommandAllowed(lines[0].words[0]))
        return {false, "page: '" + lines[0].words[0] + "' is not for the live panel"};
    std::FILE* printed = std::tmpfile();
    std::FILE* saved = run.out;
    if (printed != nullptr) run.out = printed;
    std::string saved_path = run.script_path;
    run.script_path = "page";  // messages name the page, not the panel's loading
    ExitCode code = RunScript(host, run, lines, error);
    run.script_path = saved_path;
    run.out = saved;
    std::string reply = "ok";
    if (printed != nullptr) {
        std::rewind(printed);
        char buffer[4096];
        size_t n = std::fread(buffer, 1, sizeof buffer, printed);
        if (n > 0) reply.assign(buffer, n);
        std::fclose(printed);
    }
    if (code != ExitCode::Ok) return {false, error};
    return {true, reply};
}

void ServeCommands(HostState& host, ScriptRun& run, Published& shared) {
    for (;;) {
        std::shared_ptr<PendingCommand> next;
        {
            std::lock_guard<std::mutex> lock(shared.mutex);
            if (shared.commands.empty()) return;
            next = shared.commands.front();
            shared.commands.pop_front();
        }
        next->done.set_value(RunPageCommand(host, run, next->line));
        // A page acts on the last press of a frame: each press gets its own,
        // as a pilot's hand never clicks twice within one.
        if (next->line.empty() || next->line[0] != '?') RunFrame(host, false);
    }
}

// [SECTION] HTTP
// Queues a line for the simulation thread and waits for its answer.
std::pair<bool, std::string> Ask(Published& shared, const std::string& line) {
    auto pending = std::make_shared<PendingCommand>();
    pending->line = line;
    auto answer = pending->done.get_future();
    {
        std::lock_guard<std::mutex> lock(shared.mutex);
        if (shared.stopping) return {false, "orbsim is stopping"};
        shared.commands.push_back(pending);
    }
    if (answer.wait_for(kCommandWait) != std::future_status::ready) return {false, "orbsim did not answer in time"};
    return answer.get();
}

void Reply(httplib::Response& res, const std::pair<bool, std::string>& answer) {
    res.status = answer.first ? 200 : 400;
    res.set_content(answer.second + "\n", "text/plain; charset=utf-8");
}

// What one event stream has sent: a picture goes again only when newer.
struct StreamClient {
    uint64_t sequence = 0;
    std::unordered_map<size_t, uint64_t> versions;
};

void InstallRoutes(httplib::Server& server, Published& shared) {
    server.Get("/", [](const httplib::Request&, httplib::Response& res) {
        res.set_content(LivePageHtml(), "text/html; charset=utf-8");
    });
    server.Post("/command", [&shared](const httplib::Request& req, httplib::Response& res) {
        if (req.body.size() > kMaxCommandBytes || req.body.find('\n') != std::string::npos) {
            Reply(res, {false, "page: one line of at most 4096 bytes"});
            return;
        }
        Reply(res, Ask(shared, req.body));
    });
    server.Get("/value", [&shared](const httplib::Request& req, httplib::Response& res) {
        std::string what = req.get_param_value("what");
        if (what.empty() || what.size() > kMaxCommandBytes) {
            Reply(res, {false, "page: /value?what=NAME"});
            return;
        }
        Reply(res, Ask(shared, "?" + what));
    });
    server.Get("/keys", [](const httplib::Request& req, httplib::Response& res) {
        std::string out = "{";
        for (const CduKey* key : KeysOfGauge(req.get_param_value("gauge"))) {
            out += (out.size() > 1 ? "," : "") + JsonText(key->name) + ":[" + std::to_string(key->x) + "," +
                   std::to_string(key->y) + "," + std::to_string(key->w) + "," + std::to_string(key->h) + "]";
        }
        res.set_content(out + "}", "application/json");
    });
    server.Get("/events", [&shared](const httplib::Request&, httplib::Response& res) {
        auto client = std::make_shared<StreamClient>();
        res.set_header("Cache-Control", "no-store");
        res.set_chunked_content_provider(
            "text/event-stream", [&shared, client](size_t, httplib::DataSink& sink) {
                std::string message;
                {
                    std::unique_lock<std::mutex> lock(shared.mutex);
                    shared.changed.wait_for(lock, kEventWait,
                                            [&] { return shared.stopping || shared.sequence > client->sequence; });
                    if (shared.stopping) return false;
                    if (shared.sequence == client->sequence) {
                        message = ": still here\n\n";  // keeps proxies and the page's watchdog calm
                    } else {
                        client->sequence = shared.sequence;
                        message = "data: {\"sequence\":" + std::to_string(shared.sequence) +
                                  ",\"head\":" + shared.head_json + ",\"pictures\":{";
                        bool first = true;
                        for (size_t i = 0; i < shared.pictures.size(); ++i) {
                            const GaugePicture& picture = shared.pictures[i];
                            if (picture.version == 0 || client->versions[i] == picture.version) continue;
                            client->versions[i] = picture.version;
                            message += (first ? "" : ",") + JsonText(shared.gauge_ids[i]) + ":\"" +
                                       picture.png_base64 + "\"";
                            first = false;
                        }
                        message += "}}\n\n";
                    }
                }
                return sink.is_writable() && sink.write(message.data(), message.size());
            });
    });
}

}  // namespace

bool LiveCommandAllowed(const std::string& command) {
    static const char* const kAllowed[] = {"click", "key", "type", "keyboard", "keyboard-key", "aircraft", "window",
                                           "set", "event", "traffic", "print", "echo", "frames", "fps"};
    for (const char* allowed : kAllowed)
        if (command == allowed) return true;
    return false;
}

// [SECTION] The loop
ExitCode ServeLivePanel(HostState& host, ScriptRun& run, const LiveOptions& options, std::string& error) {
    // 1. The panel, as a script's first line would load it.
    std::vector<ScriptLine> panel;
    if (!ParseScript("--serve", "panel \"" + options.panel + "\"", panel, error)) return ExitCode::BadInput;
    ExitCode loaded = RunScript(host, run, panel, error);
    if (loaded != ExitCode::Ok) return loaded;
    if (!options.start_path.empty()) {
        std::vector<ScriptLine> start;
        if (!ParseScript(options.start_path, options.start_text, start, error)) return ExitCode::BadInput;
        std::string saved = run.script_path;
        run.script_path = options.start_path;
        ExitCode started = RunScript(host, run, start, error);
        run.script_path = saved;
        if (started != ExitCode::Ok) return started;
    }

    // 2. The server, on the loopback address only.
    Published shared;
    httplib::Server server;
    InstallRoutes(server, shared);
    int port = options.port;
    if (port == 0) {
        port = server.bind_to_any_port(options.address.c_str());
        if (port <= 0) {
            error = "orbsim: no free port on " + options.address;
            return ExitCode::BadInput;
        }
    } else if (!server.bind_to_port(options.address.c_str(), port)) {
        error = "orbsim: port " + std::to_string(port) + " on " + options.address + " is taken or not allowed";
        return ExitCode::BadInput;
    }
    std::thread http([&server] { server.listen_after_bind(); });
    std::printf("orbsim: live panel on http://%s:%d/\n", options.address.c_str(), port);
    std::fflush(stdout);

    // 3. Frames in real time, the page's commands between them, pictures at
    // a steady rate.
    std::signal(SIGINT, OnStopSignal);
    std::signal(SIGTERM, OnStopSignal);
    LoopState loop;
    using Clock = std::chrono::steady_clock;
    const auto frame_period = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / host.fps));
    const auto publish_period =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / options.frame_rate));
    auto next_frame = Clock::now();
    auto next_publish = next_frame;
    while (!g_stop_requested) {
        RunFrame(host, true);
        RecordTrack(host, loop);
        ServeCommands(host, run, shared);
        auto now = Clock::now();
        if (now >= next_publish) {
            PublishFrame(host, run, loop, shared);
            next_publish += publish_period;
            if (next_publish < now) next_publish = now + publish_period;  // behind: don't pile up
        }
        next_frame += frame_period;
        if (next_frame < Clock::now()) next_frame = Clock::now();  // a slow frame is not made up for
        std::this_thread::sleep_until(next_frame);
    }

    // 4. Streams end, waiting commands are refused, the server stops.
    {
        std::lock_guard<std::mutex> lock(shared.mutex);
        shared.stopping = true;
        for (auto& pending : shared.commands) pending->done.set_value({false, "orbsim is stopping"});
        shared.commands.clear();
    }
    shared.changed.notify_all();
    server.stop();
    http.join();
    return ExitCode::Ok;
}

}  // namespace orbsim
