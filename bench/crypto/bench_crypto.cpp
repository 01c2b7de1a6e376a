// Throughput of VXCryptor's block loop and base64 conversion against the same libcrypto
// calls made directly, and the overhead between them. Prints figures; never fails on speed.
#include "VXCryptor.h"

#include <QElapsedTimer>

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>

namespace {

QByteArray pemOf(EVP_PKEY *key, bool isPrivate)
{
    BIO *bio = BIO_new(BIO_s_mem());
    if (isPrivate)
        PEM_write_bio_PrivateKey(bio, key, nullptr, nullptr, 0, nullptr, nullptr);
    else
        PEM_write_bio_PUBKEY(bio, key);
    char *text = nullptr;
    const long length = BIO_get_mem_data(bio, &text);
    QByteArray pem(text, length);
    BIO_free(bio);
    return pem;
}

// Best round of each side, the two sides alternating so that both see the same load; the
// work repeats until one round lasts long enough to be measured. Seconds per call.
std::pair<double, double> bestSeconds(const std::function<void()> &ours,
                                      const std::function<void()> &direct, int rounds = 25)
{
    int repeat = 1;
    for (;;) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repeat; ++i)
            direct();
        if (timer.nsecsElapsed() > 10'000'000 || repeat > (1 << 20))
            break;
        repeat *= 2;
    }
    const auto measure = [repeat](const std::function<void()> &work) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repeat; ++i)
            work();
        return double(timer.nsecsElapsed()) / 1e9 / repeat;
    };
    double bestOurs = 1e30;
    double bestDirect = 1e30;
    for (int r = 0; r < rounds; ++r) {
        // Which side goes first alternates too: the allocator favours whoever follows a
        // large free, and that must not decide the comparison.
        if (r % 2) {
            bestDirect = std::min(bestDirect, measure(direct));
            bestOurs = std::min(bestOurs, measure(ours));
        } else {
            bestOurs = std::min(bestOurs, measure(ours));
            bestDirect = std::min(bestDirect, measure(direct));
        }
    }
    return {bestOurs, bestDirect};
}

void report(const char *what, qsizetype bytes, std::pair<double, double> seconds)
{
    const auto [ours, direct] = seconds;
    const double mb = double(bytes) / (1024.0 * 1024.0);
    std::printf("%-26s VXCryptor %9.2f MiB/s   direct %9.2f MiB/s   overhead %+6.2f %%\n", what,
                mb / ours, mb / direct, (ours / direct - 1.0) * 100.0);
}

volatile size_t sink = 0;

} // namespace

int main()
{
    // A fixed threshold keeps the megabyte buffers of both sides on the heap; with glibc's
    // sliding one, whichever side follows a large free was served differently.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024 * 1024);
    EVP_PKEY *pkey = EVP_RSA_gen(1024);
    RSA *rsa = EVP_PKEY_get1_RSA(pkey);
    const auto publicKey =
        VXCryptor::initWithRSAKeyFromString(QString::fromLatin1(pemOf(pkey, false)), 1);
    const auto privateKey =
        VXCryptor::initWithRSAKeyFromString(QString::fromLatin1(pemOf(pkey, true)), 1);
    if (!rsa || !publicKey || !privateKey) {
        std::fprintf(stderr, "no key\n");
        return 1;
    }
    const int k = RSA_size(rsa);
    const int p = k - 12;

    QByteArray plain(64 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < plain.size(); ++i)
        plain[i] = char(i * 131 + 7);
    const qsizetype blocks = (plain.size() + p - 1) / p;
    const QByteArray cipher = publicKey->encryptData(plain).value();

    std::printf(
        "RSA-1024, PKCS #1 v1.5, %lld plain bytes in %lld blocks; best of 25 alternating rounds\n",
        static_cast<long long>(plain.size()), static_cast<long long>(blocks));

    const auto encrypt =
        bestSeconds([&] { sink = sink + publicKey->encryptData(plain)->size(); },
                    [&] {
                        QByteArray out(k * blocks, '\0');
                        auto *dst = reinterpret_cast<unsigned char *>(out.data());
                        const auto *src =
                            reinterpret_cast<const unsigned char *>(plain.constData());
                        for (qsizetype pos = 0; pos < plain.size(); pos += p) {
                            const int len = int(std::min<qsizetype>(p, plain.size() - pos));
                            dst += RSA_public_encrypt(len, src + pos, dst, rsa, RSA_PKCS1_PADDING);
                        }
                        sink = sink + out.size();
                    });
    report("encrypt (public key)", plain.size(), encrypt);

    const auto decrypt = bestSeconds(
        [&] { sink = sink + privateKey->decryptData(cipher)->size(); },
        [&] {
            QByteArray out(p * blocks, '\0');
            auto *dst = reinterpret_cast<unsigned char *>(out.data());
            const auto *src = reinterpret_cast<const unsigned char *>(cipher.constData());
            int total = 0;
            for (qsizetype b = 0; b < blocks; ++b) {
                const int n =
                    RSA_private_decrypt(k, src + b * k, dst + total, rsa, RSA_PKCS1_PADDING);
                total += n;
            }
            out.resize(total);
            sink = sink + out.size();
        },
        9);
    report("decrypt (private key)", plain.size(), decrypt);

    QByteArray large(1024 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < large.size(); ++i)
        large[i] = char(i * 7 + (i >> 9));
    const QString text = VXCryptor::base64FromData(large).value();

    const auto encode = bestSeconds([&] { sink = sink + VXCryptor::base64FromData(large)->size(); },
                                    [&] {
                                        BIO *b64 = BIO_new(BIO_f_base64());
                                        BIO *mem = BIO_new(BIO_s_mem());
                                        BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
                                        BIO *chain = BIO_push(b64, mem);
                                        BIO_write(chain, large.constData(), int(large.size()));
                                        (void)BIO_flush(chain);
                                        char *out = nullptr;
                                        const long length = BIO_get_mem_data(mem, &out);
                                        sink = sink + QString::fromLatin1(out, length).size();
                                        BIO_free_all(chain);
                                    });
    report("base64 encode", large.size(), encode);

    const auto decode = bestSeconds([&] { sink = sink + VXCryptor::dataFromBase64(text)->size(); },
                                    [&] {
                                        const QByteArray bytes = text.toLatin1();
                                        BIO *mem =
                                            BIO_new_mem_buf(bytes.constData(), int(bytes.size()));
                                        BIO *b64 = BIO_new(BIO_f_base64());
                                        BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
                                        BIO *chain = BIO_push(b64, mem);
                                        QByteArray out;
                                        char piece[256];
                                        int n = 0;
                                        while ((n = BIO_read(chain, piece, int(sizeof piece))) > 0)
                                            out.append(piece, n);
                                        sink = sink + out.size();
                                        BIO_free_all(chain);
                                    });
    report("base64 decode", large.size(), decode);

    RSA_free(rsa);
    EVP_PKEY_free(pkey);
    return 0;
}
