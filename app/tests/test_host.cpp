#include "app/tests/test_host.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <httplib.h>

#include "app/http_loader.h"
#include "tripkit/config.h"

namespace roamwise::app::testing {

namespace {

void run(const std::string& command) {
    if (std::system((command + " >/dev/null 2>&1").c_str()) != 0) {
        throw std::runtime_error("test setup failed: " + command);
    }
}

// A throw-away self-signed certificate for 127.0.0.1, made once per test
// process in a temporary folder (host.pem, host-key.pem) removed when the
// process exits.
const std::string& certificates() {
    // Never destroyed: the exit handler below still needs it.
    static const std::string& folder = *[] {
        char pattern[] = "/tmp/roamwise-ca-XXXXXX";
        auto* made = new std::string(::mkdtemp(pattern));
        run("openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -addext "
            "subjectAltName=IP:127.0.0.1 -keyout " +
            *made + "/host-key.pem -out " + *made + "/host.pem");
        // Only this process trusts it, the way the curl tool would.
        ::setenv("CURL_CA_BUNDLE", (*made + "/host.pem").c_str(), 1);
        std::atexit([] { std::filesystem::remove_all(certificates()); });
        return made;
    }();
    return folder;
}

}  // namespace

TestHost::TestHost() {
    m_server = std::make_unique<httplib::SSLServer>((certificates() + "/host.pem").c_str(),
                                                    (certificates() + "/host-key.pem").c_str());
    if (!m_server->is_valid())
        throw std::runtime_error("test host: the certificate was not accepted");
    m_server->Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        Answer answer{404, "not found", std::chrono::milliseconds(0), {}};
        {
            std::lock_guard lock(m_mutex);
            std::optional<std::string> since;
            if (request.has_header("If-Modified-Since"))
                since = request.get_header_value("If-Modified-Since");
            m_seen.push_back(
                {request.path, request.target, request.get_header_value("User-Agent"), since});
            if (m_all) {
                answer.status = *m_all;
            } else if (auto found = m_answers.find(request.path); found != m_answers.end()) {
                answer = found->second;
            }
        }
        if (answer.delay.count() > 0) std::this_thread::sleep_for(answer.delay);
        response.status = answer.status;
        for (const auto& [name, value] : answer.headers) response.set_header(name, value);
        if (answer.status != 304) response.set_content(answer.body, "application/json");
    });
    m_port = m_server->bind_to_any_port("127.0.0.1");
    if (m_port <= 0) throw std::runtime_error("test host: no port");
    m_thread = std::thread([this] { m_server->listen_after_bind(); });
    // Bound already: connections wait in the backlog until the loop accepts them.
}

TestHost::~TestHost() {
    m_server->stop();
    m_thread.join();
}

std::string TestHost::url() const {
    return "https://127.0.0.1:" + std::to_string(m_port) + "/";
}

void TestHost::set(const std::string& path, Answer answer) {
    std::lock_guard lock(m_mutex);
    m_answers[path] = std::move(answer);
}

void TestHost::setAll(int status) {
    std::lock_guard lock(m_mutex);
    m_all = status;
}

void TestHost::clear() {
    std::lock_guard lock(m_mutex);
    m_answers.clear();
    m_all.reset();
    m_seen.clear();
}

std::vector<TestHost::Seen> TestHost::seen() const {
    std::lock_guard lock(m_mutex);
    return m_seen;
}

int closedPort() {
    // Bound and closed again: nothing listens there for the rest of the test.
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    socklen_t size = sizeof address;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(fd);
    return ntohs(address.sin_port);
}

tripkit::HttpLoader testLoader(std::string defaultHost, long totalTimeoutSeconds) {
    certificates();
    HttpOptions options;
    options.connectTimeoutSeconds = 2;
    options.totalTimeoutSeconds = totalTimeoutSeconds;
    // The test server would brotli-compress multi-megabyte files at its
    // slowest setting; plain bodies keep the tests quick.
    options.compressed = false;
    return [defaultHost = std::move(defaultHost), options](const std::string& url) {
        const std::string builtIn(tripkit::Config::defaultDataURL);
        std::string target = url;
        if (url.starts_with(builtIn))
            target = defaultHost + "roamwise-data/" + url.substr(builtIn.size());
        if (!target.starts_with("https://127.0.0.1:")) {
            throw tripkit::FetchError(tripkit::FetchError::Kind::transport, url,
                                      "tests stay on this machine");
        }
        return httpGet(target, options);
    };
}

}  // namespace roamwise::app::testing
