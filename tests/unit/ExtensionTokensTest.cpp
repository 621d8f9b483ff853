#include <gtest/gtest.h>

#include <Quorvex/core/ExtensionTokens.h>

namespace KOVA::Quorvex {
namespace {

TEST(ExtensionTokensTest, OnlyWholeTokensMatch) {
    const char* const extensions = "GL_EXT_texture3D GL_ARB_shader_objects ";
    EXPECT_TRUE(IsExtensionToken(extensions, "GL_EXT_texture3D"));
    EXPECT_TRUE(IsExtensionToken(extensions, "GL_ARB_shader_objects"));
    EXPECT_TRUE(IsExtensionToken("GL_EXT_texture3D_more GL_EXT_texture3D", "GL_EXT_texture3D"));
    for (const char* name : {"GL_EXT_texture", "EXT_texture3D", "GL_EXT_texture3D ", "GL_ext_texture3D", " ", "",
                             "GL_EXT_texture3D GL_ARB_shader_objects"}) {
        EXPECT_FALSE(IsExtensionToken(extensions, name)) << '"' << name << '"';
    }
}

TEST(ExtensionTokensTest, EveryNameOfAListMustBeThere) {
    const char* const extensions = "A B C ";
    for (const char* names : {"", "A", "C A", "B C ", "A A A"}) {
        EXPECT_TRUE(AreExtensionTokens(extensions, names)) << '"' << names << '"';
    }
    for (const char* names : {"A D", "A  B", " A", "AB", "a"}) {
        EXPECT_FALSE(AreExtensionTokens(extensions, names)) << '"' << names << '"';
    }
    EXPECT_TRUE(AreExtensionTokens("A  B", "A  B")) << "an empty name matches an empty token";
    EXPECT_FALSE(AreExtensionTokens("", "A"));
}

TEST(ExtensionTokensTest, MajorVersions) {
    EXPECT_EQ(MajorVersion("2.0.1"), 2);
    EXPECT_EQ(MajorVersion("4.5 (Compatibility Profile) Driver 1.2"), 4);
    EXPECT_EQ(MajorVersion("none"), 0);
    EXPECT_EQ(MajorVersion(""), 0);
    EXPECT_EQ(MajorVersion(nullptr), 0);
}

} // namespace
} // namespace KOVA::Quorvex
