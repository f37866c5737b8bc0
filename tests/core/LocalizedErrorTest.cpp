// SPDX-License-Identifier: MIT
#include "support/LocalizedError.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace corvanta {
namespace {

class PlainError : public LocalizedError {
public:
    [[nodiscard]] QString errorDescription() const override { return QStringLiteral("It’s broken."); }
};

class HelpfulError final : public PlainError {
public:
    [[nodiscard]] std::optional<QString> recoverySuggestion() const override { return QStringLiteral("Mend it."); }
};

TEST(LocalizedError, SuggestsNothingUnlessItSaysSo) {
    EXPECT_EQ(PlainError().recoverySuggestion(), std::nullopt);
}

TEST(LocalizedError, SaysItsDescriptionAsUTF8) {
    const PlainError error;
    EXPECT_STREQ(error.what(), "It’s broken.");
}

TEST(LocalizedError, KeepsItsTextsWhenCopied) {
    const HelpfulError error;
    EXPECT_STREQ(error.what(), "It’s broken.");
    const HelpfulError copy = error;
    EXPECT_STREQ(copy.what(), "It’s broken.");
    EXPECT_EQ(copy.recoverySuggestion(), QStringLiteral("Mend it."));
}

TEST(LocalizedError, TakesTheTextsOfWhatIsAssigned) {
    class Named final : public LocalizedError {
    public:
        explicit Named(QString name)
            : m_name(std::move(name)) {}

        [[nodiscard]] QString errorDescription() const override { return m_name; }

    private:
        QString m_name;
    };

    Named error(QStringLiteral("before"));
    EXPECT_STREQ(error.what(), "before");
    error = Named(QStringLiteral("after"));
    EXPECT_STREQ(error.what(), "after");
}

TEST(LocalizedError, SaysSomethingEvenWhenItsDescriptionFails) {
    class Hopeless final : public LocalizedError {
    public:
        [[nodiscard]] QString errorDescription() const override { throw std::runtime_error("no words"); }
    };

    EXPECT_STREQ(Hopeless().what(), "error");
}

TEST(ErrorTexts, AreTheErrorsOwn) {
    const ErrorTexts texts = errorTexts(std::make_exception_ptr(HelpfulError()));
    EXPECT_EQ(texts, (ErrorTexts{QStringLiteral("It’s broken."), QStringLiteral("Mend it.")}));
}

TEST(ErrorTexts, AreWhatAnyOtherExceptionSays) {
    const ErrorTexts texts = errorTexts(std::make_exception_ptr(std::runtime_error("out of luck")));
    EXPECT_EQ(texts, (ErrorTexts{QStringLiteral("out of luck"), std::nullopt}));
}

TEST(ErrorTexts, AreGenericForSomethingThatIsNoException) {
    const ErrorTexts texts = errorTexts(std::make_exception_ptr(5));
    EXPECT_EQ(texts, (ErrorTexts{QStringLiteral("The operation couldn’t be completed."), std::nullopt}));
}

} // namespace
} // namespace corvanta
