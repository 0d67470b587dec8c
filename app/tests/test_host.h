// A real HTTPS data host on 127.0.0.1 for the tests: its certificate is made
// for this run (openssl, self-signed), and only this test process trusts it
// (CURL_CA_BUNDLE). Each path's answer can be set, so
// faults are injected per file.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tripkit/feed_hosts.h"

namespace httplib {
class SSLServer;
}

namespace roamwise::app::testing {

class TestHost {
public:
    struct Answer {
        Answer(int status = 200, std::string body = {}, std::chrono::milliseconds delay = {},
               std::map<std::string, std::string> headers = {})
            : status(status), body(std::move(body)), delay(delay), headers(std::move(headers)) {}
        int status;
        std::string body;
        std::chrono::milliseconds delay;
        std::map<std::string, std::string> headers;  // "Expires", "Last-Modified"
    };

    TestHost();
    ~TestHost();

    // "https://127.0.0.1:PORT/"
    std::string url() const;

    // What arrived: the path, the whole target with its query, and the
    // headers the weather services care about.
    struct Seen {
        std::string path, target, userAgent;
        std::optional<std::string> ifModifiedSince;
    };

    // The answer for a path ("/roamwise-data/flights/JFK.json"); others get 404.
    void set(const std::string& path, Answer answer);
    void setAll(int status);  // every path, known or not, answers this status
    void clear();
    std::vector<Seen> seen() const;

private:
    std::unique_ptr<httplib::SSLServer> m_server;
    std::thread m_thread;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::map<std::string, Answer> m_answers;
    std::optional<int> m_all;
    std::vector<Seen> m_seen;
};

// A TCP port on 127.0.0.1 where nothing listens (a host that is down).
int closedPort();

// A loader over libcurl for tests: requests to the built-in data host go to
// `defaultHost` instead (nothing else may leave the machine), with a short
// time-out so that a stalled answer is a quick failure.
tripkit::HttpLoader testLoader(std::string defaultHost, long totalTimeoutSeconds = 20);

}  // namespace roamwise::app::testing
