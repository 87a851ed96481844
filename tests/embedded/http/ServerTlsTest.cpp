// What is different where TLS is spoken. That the rest is the same is for the other tests, which
// are run over TLS, too.
#include "Certificates.h"
#include "RawClient.h"
#include "RunningServer.h"

#include <gtest/gtest.h>

#include "http/SelfSigned.h"
#include "limits/Limits.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <openssl/asn1.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace embedded::http::test {
namespace {

using Clock = std::chrono::steady_clock;

const std::string whole = "POST /echo HTTP/1.1\r\nHost: h\r\nContent-Length: 4\r\n\r\nbody";

const ClientTls noTls;

// The files and what is made of them.
struct Made {
    Made(const PemPair& certificate, const std::string& clientCa)
        : files(certificate, clientCa), context(std::make_shared<TlsContext>(files.files())) {}

    TlsFiles files;
    std::shared_ptr<TlsContext> context;
};

// With a certificate of its own, and what clients have to show.
struct Tls : Made, RunningServer {
    explicit Tls(const Options& options = Options(),
                 const PemPair& certificate = test::certificate(), const std::string& clientCa = "")
        : Made(certificate, clientCa), RunningServer(options, nullptr, context) {}

    bool serves(const ClientTls& tls = clientTls()) const {
        RawClient client(tlsPort(), tls);
        client.send(whole);
        return client.reply().find("[body]") != std::string::npos;
    }
    // What the log has in the end.
    bool logs(const std::string& text) const {
        for (int attempt = 0; attempt < 500 && log().find(text) == std::string::npos; ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return log().find(text) != std::string::npos;
    }
};

ClientTls ofVersion(int version) {
    ClientTls tls = clientTls();
    SSL_CTX_set_cipher_list(tls.get(), "DEFAULT:@SECLEVEL=0"); // OpenSSL would not speak an old one
    SSL_CTX_set_min_proto_version(tls.get(), version);
    SSL_CTX_set_max_proto_version(tls.get(), version);
    return tls;
}

Options with(unsigned connections, std::chrono::seconds time = std::chrono::seconds(30)) {
    Options options;
    options.ioThreads = 1; // what was first is seen first
    options.connectionLimit = connections;
    options.requestTimeout = time;
    return options;
}

// As a client that is about to shake hands sends it.
std::string clientHello() {
    const ClientTls tls = clientTls();
    const std::unique_ptr<SSL, void (*)(SSL*)> connection(SSL_new(tls.get()), SSL_free);
    BIO* const out = BIO_new(BIO_s_mem());
    SSL_set_bio(connection.get(), BIO_new(BIO_s_mem()), out);
    SSL_connect(connection.get());
    std::string bytes(BIO_ctrl_pending(out), ' ');
    BIO_read(out, bytes.data(), static_cast<int>(bytes.size()));
    ERR_clear_error();
    return bytes;
}

TEST(ServerTls, IsServedBesideTheOther) {
    const Tls running;
    RawClient plain(running.port(), noTls);
    plain.send(whole);
    EXPECT_NE(plain.reply().find("[body]"), std::string::npos);
    EXPECT_FALSE(running.lastRequest().peer.isSecure);
    RawClient secure(running.tlsPort(), clientTls());
    secure.send(whole);
    EXPECT_NE(secure.reply().find("[body]"), std::string::npos);
    const Peer peer = running.lastRequest().peer;
    EXPECT_TRUE(peer.isSecure);
    EXPECT_EQ(peer.address, "127.0.0.1");
    EXPECT_EQ(peer.certificateName, "");
    EXPECT_EQ(running.log(), "");
}

TEST(ServerTls, Is12AndNewer) {
    const Tls running;
    EXPECT_TRUE(running.serves(ofVersion(TLS1_3_VERSION)));
    EXPECT_TRUE(running.serves(ofVersion(TLS1_2_VERSION)));
    EXPECT_EQ(running.log(), "");
    for (const int version : {TLS1_1_VERSION, TLS1_VERSION})
        EXPECT_EQ(RawClient(running.tlsPort(), ofVersion(version)).handshakeError(),
                  "tlsv1 alert protocol version");
    EXPECT_TRUE(running.logs("TLS handshake failed: unsupported protocol"));
}

TEST(ServerTls, DoesNotCompressNorBeginAnew) {
    const Tls running;
    RawClient client(running.tlsPort(), ofVersion(TLS1_2_VERSION));
    EXPECT_EQ(SSL_get_current_compression(client.tls()), nullptr);
    EXPECT_EQ(SSL_renegotiate(client.tls()), 1);
    EXPECT_NE(SSL_do_handshake(client.tls()), 1);
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), SSL_R_NO_RENEGOTIATION);
    EXPECT_TRUE(running.serves());
}

TEST(ServerTls, AHandshakeThatBreaksOffAnywhereHarmsNobody) {
    Tls running(with(1));
    const std::string hello = clientHello();
    for (std::size_t size = 0; size < hello.size(); size += size < 12 ? 1 : 23) {
        RawClient ends(running.tlsPort(), noTls);
        ends.send(hello.substr(0, size));
        ends.closeSending();
        EXPECT_EQ(ends.rest(), "") << size;
        RawClient resets(running.tlsPort(), noTls);
        resets.send(hello.substr(0, size));
        resets.reset();
    }
    RawClient stops(running.tlsPort(), noTls); // with the server's part of it on the way
    stops.send(hello);
    stops.read(100);
    stops.reset();
    EXPECT_TRUE(running.logs("TLS handshake failed: the client has ended it"));
    EXPECT_TRUE(running.serves());
}

TEST(ServerTls, AHandshakeThatIsNoneIsToldAndClosed) {
    Tls running(with(1));
    std::string hello = clientHello();
    const std::string garbage(1000, '\xff');
    std::string wrong = hello;
    std::fill(wrong.begin() + 11, wrong.end(), '\0');
    for (const std::string& bytes : {garbage, wrong}) {
        RawClient client(running.tlsPort(), noTls);
        client.send(bytes);
        client.closeSending();
        EXPECT_EQ(client.rest().find("HTTP"), std::string::npos);
    }
    EXPECT_TRUE(running.logs("TLS handshake failed: "));
    EXPECT_TRUE(running.serves());
}

TEST(ServerTls, AHandshakeHasTheTimeOfARequest) {
    Tls running(with(8, std::chrono::seconds(1)));
    const auto began = Clock::now();
    RawClient silent(running.tlsPort(), noTls);
    RawClient begun(running.tlsPort(), noTls);
    begun.send(clientHello().substr(0, 50));
    EXPECT_TRUE(silent.closed());
    EXPECT_TRUE(begun.closed());
    const auto took = Clock::now() - began;
    EXPECT_GE(took, std::chrono::milliseconds(900));
    EXPECT_LT(took, std::chrono::seconds(8));
    EXPECT_TRUE(running.logs("TLS handshake failed: it was not done in time"));
}

TEST(ServerTls, WhoShakesHandsGivesWay) {
    Tls running(with(1));
    RawClient slow(running.tlsPort(), noTls);
    slow.send(clientHello().substr(0, 50));
    EXPECT_TRUE(running.serves());
    EXPECT_TRUE(slow.closed());
    EXPECT_TRUE(running.logs("closed, as too many are connected and this one waited longest"));
}

TEST(ServerTls, WhoIsTurnedAwayIsToldSoAfterTheHandshake) {
    Options options = with(1);
    options.refusalTime = std::chrono::seconds(1);
    Tls running(options);
    RawClient first(running.tlsPort(), clientTls());
    first.send("GET /wait HTTP/1.1\r\nHost: h\r\n\r\n");
    running.awaitWaiting(1);
    RawClient second(running.tlsPort(), clientTls());
    EXPECT_EQ(second.rest().substr(0, 32), "HTTP/1.1 503 Service Unavailable");
    EXPECT_TRUE(second.hasFarewell());
    const auto began = Clock::now();
    RawClient silent(running.tlsPort(), noTls);
    EXPECT_TRUE(silent.closed());
    EXPECT_LT(Clock::now() - began, std::chrono::seconds(8));
    running.release();
    EXPECT_NE(first.reply().find("/wait"), std::string::npos);
}

TEST(ServerTls, NothingIsMissingWhereTheServerSaysSo) {
    Options options = with(8, std::chrono::seconds(1));
    options.idleTimeout = std::chrono::seconds(1);
    Tls running(options);
    RawClient closing(running.tlsPort(), clientTls());
    closing.send("POST /echo HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n");
    EXPECT_NE(closing.rest().find("/echo"), std::string::npos);
    EXPECT_TRUE(closing.hasFarewell());
    RawClient late(running.tlsPort(), clientTls());
    late.send(whole.substr(0, 20));
    EXPECT_EQ(late.rest().substr(0, 28), "HTTP/1.1 408 Request Timeout");
    EXPECT_TRUE(late.hasFarewell());
    RawClient idle(running.tlsPort(), clientTls());
    EXPECT_TRUE(idle.closed());
    EXPECT_TRUE(idle.hasFarewell());
}

TEST(ServerTls, AnEndThatWasNotSaidIsAnEnd) {
    const Tls running;
    RawClient client(running.tlsPort(), clientTls());
    client.send(whole.substr(0, 20));
    ::shutdown(SSL_get_fd(client.tls()), SHUT_WR);
    EXPECT_EQ(client.rest().substr(0, 24), "HTTP/1.1 400 Bad Request");
}

TEST(ServerTls, TheEndOfTheServerDoesNotWaitForHandshakes) {
    Tls running(with(8));
    RawClient silent(running.tlsPort(), noTls);
    RawClient idle(running.tlsPort(), clientTls());
    idle.send(whole);
    EXPECT_NE(idle.reply().find("[body]"), std::string::npos);
    const auto began = Clock::now();
    running.server().stop();
    running.join();
    EXPECT_LT(Clock::now() - began, std::chrono::seconds(5));
    EXPECT_TRUE(silent.closed());
    EXPECT_TRUE(idle.closed());
    EXPECT_TRUE(idle.hasFarewell());
}

// The certificate that the client has been shown.
std::string shown(const RawClient& client) {
    const std::unique_ptr<X509, void (*)(X509*)> certificate(
        SSL_get1_peer_certificate(client.tls()), X509_free);
    std::string name(100, ' ');
    name.resize(static_cast<std::size_t>(
        X509_NAME_get_text_by_NID(X509_get_subject_name(certificate.get()), NID_commonName,
                                  name.data(), static_cast<int>(name.size()))));
    return name;
}

TEST(ServerTls, FilesReadAgainAreForWhoComesThen) {
    Tls running(Options(), certificate({{"before"}}));
    RawClient early(running.tlsPort(), clientTls());
    EXPECT_EQ(shown(early), "before");
    running.files.put(certificate({{"after"}}));
    EXPECT_EQ(shown(RawClient(running.tlsPort(), clientTls())), "before");
    running.context->reload();
    EXPECT_EQ(shown(RawClient(running.tlsPort(), clientTls())), "after");
    early.send(whole);
    EXPECT_NE(early.reply().find("[body]"), std::string::npos);
}

TEST(ServerTls, FilesThatCannotBeReadAgainChangeNothing) {
    const Tls running(Options(), certificate({{"before"}}));
    TlsFiles::write(running.files.files().key, certificate().key); // of another certificate
    EXPECT_THROW(running.context->reload(), std::runtime_error);
    EXPECT_EQ(shown(RawClient(running.tlsPort(), clientTls())), "before");
    std::filesystem::remove(running.files.files().certificate);
    EXPECT_THROW(running.context->reload(), std::runtime_error);
    EXPECT_EQ(shown(RawClient(running.tlsPort(), clientTls())), "before");
}

std::string problem(const TlsContext::Files& files) {
    try {
        const TlsContext context(files);
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(TlsContext, SaysWhichFileCannotBeUsed) {
    const PemPair pair = certificate();
    const TlsFiles good(pair, pair.certificate);
    EXPECT_EQ(problem(good.files()), "none");
    const std::string encrypted = good.files().key.string() + ".encrypted";
    ASSERT_EQ(std::system(("openssl pkey -aes256 -passout pass:secret -in " +
                           good.files().key.string() + " -out " + encrypted)
                              .c_str()),
              0);
    TlsContext::Files files = good.files();
    files.key = encrypted;
    EXPECT_EQ(problem(files).rfind("cannot use the key " + encrypted + ": ", 0), 0U)
        << problem(files);
    files = good.files();
    files.certificate = "/nonesuch";
    EXPECT_EQ(problem(files), "cannot use the certificate /nonesuch: No such file or directory");
    files = good.files();
    files.key = files.certificate;
    EXPECT_EQ(problem(files).rfind("cannot use the key ", 0), 0U) << problem(files);
    files = good.files();
    files.clientCa = files.key;
    EXPECT_EQ(problem(files).rfind("cannot use the client CA file ", 0), 0U) << problem(files);
    TlsFiles::write(good.files().key, certificate().key);
    EXPECT_EQ(problem(good.files()),
              "cannot use the key " + good.files().key.string() + ": key values mismatch");
}

// What the server takes the client with `pair` for: "user NAME", or why it does not talk to it.
std::string taken(const Tls& running, const ClientTls& tls) {
    RawClient client(running.tlsPort(), tls);
    client.send(whole);
    if (client.reply().find("[body]") == std::string::npos)
        return "refused";
    return "user " + running.lastRequest().peer.certificateName;
}

TEST(ServerTls, AClientWhoseCertificateIsNoGoodIsRefused) {
    const PemPair alice = certificate({{"alice"}});
    const PemPair other = certificate({{"alice"}});
    Said past{{"past"}};
    past.validTo = -60;
    const PemPair over = certificate(past);
    const Tls running(Options(), certificate(), alice.certificate + over.certificate);
    EXPECT_EQ(taken(running, clientTls(other.certificate, other.key)), "refused");
    EXPECT_TRUE(running.logs("TLS handshake failed: certificate verify failed (SSL routines): "
                             "self-signed certificate"));
    EXPECT_EQ(taken(running, clientTls(over.certificate, over.key)), "refused");
    EXPECT_TRUE(running.logs("certificate has expired"));
    EXPECT_EQ(taken(running, clientTls(alice.certificate, alice.key)), "user alice");
}

TEST(ServerTls, WithoutRootsNobodyIsAsked) {
    const PemPair alice = certificate({{"alice"}});
    const Tls running;
    EXPECT_EQ(taken(running, clientTls(alice.certificate, alice.key)), "user ");
}

TEST(ServerTls, AClientThatComesAgainWithATicketIsTheSame) {
    const PemPair alice = certificate({{"alice"}});
    const PemPair bob = certificate({{"bob"}});
    const Tls running(Options(), certificate(), alice.certificate);
    for (const int version : {TLS1_2_VERSION, TLS1_3_VERSION}) {
        ClientTls tls = clientTls(alice.certificate, alice.key);
        SSL_CTX_set_max_proto_version(tls.get(), version);
        RawClient first(running.tlsPort(), tls);
        first.send(whole);
        first.reply();
        const std::unique_ptr<SSL_SESSION, void (*)(SSL_SESSION*)> ticket(
            SSL_get1_session(first.tls()), SSL_SESSION_free);
        const auto again = [&] {
            const std::shared_ptr<SSL> connection(SSL_new(tls.get()), SSL_free);
            RawClient client(running.tlsPort(), noTls);
            client.shakeHands(connection, ticket.get());
            client.send(whole);
            const bool resumed = SSL_session_reused(connection.get()) == 1;
            if (client.reply().find("[body]") == std::string::npos)
                return std::string("refused");
            return (resumed ? "resumed " : "anew ") + running.lastRequest().peer.certificateName;
        };
        EXPECT_EQ(again(), "resumed alice");
        // With other roots, a ticket of before proves nothing.
        TlsFiles::write(running.files.files().clientCa, bob.certificate);
        running.context->reload();
        EXPECT_EQ(again(), "refused");
        TlsFiles::write(running.files.files().clientCa, alice.certificate);
        running.context->reload();
        EXPECT_EQ(again(), "anew alice");
    }
}

struct NameCase {
    const char* label;
    std::vector<std::string> names;
    int type;
    std::string taken;
};

class ServerTlsName : public testing::TestWithParam<NameCase> {};

TEST_P(ServerTlsName, IsOneLineOfUtf8OrNone) {
    Said said;
    said.commonNames = GetParam().names;
    said.commonNameType = GetParam().type;
    const PemPair pair = certificate(said);
    const Tls running(Options(), certificate(), pair.certificate);
    EXPECT_EQ(taken(running, clientTls(pair.certificate, pair.key)), "user " + GetParam().taken);
}

INSTANTIATE_TEST_SUITE_P(
    Server, ServerTlsName,
    testing::Values(NameCase{"None", {}, MBSTRING_UTF8, ""},
                    NameCase{"Plain", {"bob"}, MBSTRING_UTF8, "bob"},
                    NameCase{"Utf8", {"J\xc3\xb6rg"}, MBSTRING_UTF8, "J\xc3\xb6rg"},
                    NameCase{"Latin1", {"J\xf6rg"}, V_ASN1_T61STRING, "J\xc3\xb6rg"},
                    NameCase{"Two", {"alice", "bob"}, MBSTRING_UTF8, ""},
                    NameCase{"Nul", {std::string("admin\0.example", 14)}, V_ASN1_UTF8STRING, ""},
                    NameCase{"LineBreak", {"alice\nbob"}, V_ASN1_UTF8STRING, ""}),
    [](const auto& name) { return name.param.label; });

TEST(ServerTls, AClientsCertificatesHaveALimit) {
    // Beside the padding: the rest of the certificate, and lengths.
    const auto padded = [](std::size_t size) {
        Said said;
        said.padding = size - 500;
        return certificate(said);
    };
    const PemPair good = padded(limits::clientCertificates);
    const PemPair large = padded(limits::clientCertificates + 1000);
    const Tls running(Options(), certificate(), good.certificate + large.certificate);
    EXPECT_EQ(taken(running, clientTls(good.certificate, good.key)), "user alice");
    EXPECT_EQ(taken(running, clientTls(large.certificate, large.key)), "refused");
    EXPECT_TRUE(running.logs("TLS handshake failed: excessive message size"));
}

TEST(SelfSigned, IsForItsNamesAndTakenByWhoTrustsIt) {
    const SelfSigned made = makeSelfSigned({"desk.example", "localhost", "127.0.0.1", "::1"});
    const Tls running(Options(), PemPair{made.certificate, made.key});
    const TlsFiles trusted(PemPair{made.certificate, made.key});
    for (const char* const name : {"desk.example", "localhost", "127.0.0.1", "::1", "other"}) {
        ClientTls tls = clientTls();
        SSL_CTX_load_verify_file(tls.get(), trusted.files().certificate.c_str());
        SSL_CTX_set_verify(tls.get(), SSL_VERIFY_PEER, nullptr);
        X509_VERIFY_PARAM* const wanted = SSL_CTX_get0_param(tls.get());
        X509_VERIFY_PARAM_set_flags(wanted, X509_V_FLAG_X509_STRICT);
        if (X509_VERIFY_PARAM_set1_ip_asc(wanted, name) != 1)
            X509_VERIFY_PARAM_set1_host(wanted, name, 0);
        const std::string error = RawClient(running.tlsPort(), tls).handshakeError();
        EXPECT_EQ(error, name == std::string("other") ? "certificate verify failed" : "") << name;
    }
}

TEST(SelfSigned, IsAnotherOneEachTime) {
    const SelfSigned one = makeSelfSigned({"localhost"});
    const SelfSigned two = makeSelfSigned({"localhost"});
    EXPECT_NE(one.key, two.key);
    EXPECT_NE(one.certificate, two.certificate);
    EXPECT_NO_THROW(makeSelfSigned({std::string(100, 'a') + ".example"}));
}

TEST(SelfSigned, NamesAreHostsAndAddresses) {
    for (const char* const good :
         {"localhost", "a.b-c.example", "*.example", "10.0.0.1", "fe80::1", "::", "x_y", "123"})
        EXPECT_TRUE(canBeCertified(good)) << good;
    for (const std::string& bad :
         {std::string(), std::string("a b"), std::string("a,DNS:b"), std::string("*"),
          std::string("*."), std::string(".a"), std::string("a:b"), std::string("\xc3\xb6"),
          std::string(254, 'a'), std::string("a\0b", 3)})
        EXPECT_FALSE(canBeCertified(bad)) << bad;
}

} // namespace
} // namespace embedded::http::test
