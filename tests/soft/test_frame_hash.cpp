// The frame hash the player prints with --hashes and a web page compares:
// SHA-256, checked against published digests at the lengths where its padding
// changes (55, 56 and 64 bytes: one block or two), and on a whole frame.
#include "FrameHash.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(FrameHash, IsSha256AtEveryPaddingBoundaryAndOnAWholeFrame)
{
    struct Case {
        std::string message;
        const char* digest;
    };
    const Case cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(64, 'a'), "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb"},
        {std::string(119, 'a'), "31eba51c313a5c08226adf18d4a359cfdfd8d2e816b13f4af952f7ea6584dcfb"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Sha256Hex(reinterpret_cast<const std::uint8_t*>(c.message.data()), c.message.size()), c.digest)
            << c.message.size() << " bytes";
    std::vector<std::uint8_t> frame(640 * 480);
    for (std::size_t i = 0; i < frame.size(); i++)
        frame[i] = static_cast<std::uint8_t>(i % 251);
    EXPECT_EQ(Sha256Hex(frame.data(), frame.size()), "10a6169813fcc0410b3d72574ff2dd1997936b90db821427136315967cff2bb9");
}
