#include <afx.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <type_traits>

#include "ExceptionMatchers.h"

namespace {

std::string MessageOf(const CException& exception) {
    char buffer[256] = "unchanged";
    exception.GetErrorMessage(buffer, sizeof(buffer));
    return buffer;
}

struct DeletionProbe : CException {
    DeletionProbe(BOOL autoDelete, bool& isDeleted)
        : CException(autoDelete), isDeleted_(isDeleted) {}
    ~DeletionProbe() override { isDeleted_ = true; }

private:
    bool& isDeleted_;
};

TEST(CException, DeleteReleasesAHeapObjectOnly) {
    bool isHeapObjectDeleted = false;
    (new DeletionProbe(TRUE, isHeapObjectDeleted))->Delete();
    EXPECT_TRUE(isHeapObjectDeleted);

    bool isOtherDeleted = false;
    DeletionProbe other(FALSE, isOtherDeleted);
    other.Delete();
    EXPECT_FALSE(isOtherDeleted);
}

TEST(CException, ClassesFormTheHierarchy) {
    EXPECT_TRUE(RUNTIME_CLASS(CException)->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    EXPECT_EQ(RUNTIME_CLASS(CException), RUNTIME_CLASS(CArchiveException)->m_pfnGetBaseClass());
    EXPECT_EQ(RUNTIME_CLASS(CException), RUNTIME_CLASS(CFileException)->m_pfnGetBaseClass());
    const CRuntimeClass* const simple = RUNTIME_CLASS(CSimpleException);
    EXPECT_EQ(RUNTIME_CLASS(CException), simple->m_pfnGetBaseClass());
    EXPECT_EQ(simple, RUNTIME_CLASS(CMemoryException)->m_pfnGetBaseClass());
    EXPECT_EQ(simple, RUNTIME_CLASS(CNotSupportedException)->m_pfnGetBaseClass());
    EXPECT_EQ(simple, RUNTIME_CLASS(CUserException)->m_pfnGetBaseClass());
    EXPECT_EQ(simple, RUNTIME_CLASS(CInvalidArgException)->m_pfnGetBaseClass());
    EXPECT_EQ(simple, RUNTIME_CLASS(CResourceException)->m_pfnGetBaseClass());
    EXPECT_TRUE((std::is_base_of_v<CSimpleException, CUserException>));
    EXPECT_FALSE((std::is_base_of_v<CSimpleException, CFileException>));
}

TEST(CException, ArchiveCausesHaveTheirNumbers) {
    EXPECT_EQ(0, CArchiveException::none);
    EXPECT_EQ(1, CArchiveException::genericException);
    EXPECT_EQ(2, CArchiveException::readOnly);
    EXPECT_EQ(3, CArchiveException::endOfFile);
    EXPECT_EQ(4, CArchiveException::writeOnly);
    EXPECT_EQ(5, CArchiveException::badIndex);
    EXPECT_EQ(6, CArchiveException::badClass);
    EXPECT_EQ(7, CArchiveException::badSchema);
}

TEST(CException, FileCausesHaveTheirNumbers) {
    EXPECT_EQ(0, CFileException::none);
    EXPECT_EQ(1, CFileException::genericException);
    EXPECT_EQ(2, CFileException::fileNotFound);
    EXPECT_EQ(3, CFileException::badPath);
    EXPECT_EQ(4, CFileException::tooManyOpenFiles);
    EXPECT_EQ(5, CFileException::accessDenied);
    EXPECT_EQ(6, CFileException::invalidFile);
    EXPECT_EQ(7, CFileException::removeCurrentDir);
    EXPECT_EQ(8, CFileException::directoryFull);
    EXPECT_EQ(9, CFileException::badSeek);
    EXPECT_EQ(10, CFileException::hardIO);
    EXPECT_EQ(11, CFileException::sharingViolation);
    EXPECT_EQ(12, CFileException::lockViolation);
    EXPECT_EQ(13, CFileException::diskFull);
    EXPECT_EQ(14, CFileException::endOfFile);
}

TEST(CException, ThrowFunctionsThrowPointersOfTheirClass) {
    EXPECT_EQ(ArchiveFailure(CArchiveException::badSchema, "old.doc"),
              ThrownBy([] { AfxThrowArchiveException(CArchiveException::badSchema, "old.doc"); }));
    EXPECT_EQ(ArchiveFailure(CArchiveException::endOfFile),
              ThrownBy([] { AfxThrowArchiveException(CArchiveException::endOfFile); }));
    EXPECT_EQ(FileFailure(CFileException::hardIO, "a.doc"),
              ThrownBy([] { AfxThrowFileException(CFileException::hardIO, EIO, "a.doc"); }));
    EXPECT_EQ(SimpleFailure("CUserException"), ThrownBy([] { AfxThrowUserException(); }));
    EXPECT_EQ(SimpleFailure("CMemoryException"), ThrownBy([] { AfxThrowMemoryException(); }));
    EXPECT_EQ(SimpleFailure("CNotSupportedException"),
              ThrownBy([] { AfxThrowNotSupportedException(); }));
    EXPECT_EQ(SimpleFailure("CInvalidArgException"),
              ThrownBy([] { AfxThrowInvalidArgException(); }));
}

TEST(CException, FileExceptionCarriesTheSystemsNumber) {
    try {
        AfxThrowFileException(CFileException::hardIO, EIO, "a.doc");
    } catch (CFileException* exception) {
        EXPECT_EQ(EIO, exception->m_lOsError);
        exception->Delete();
    }
    EXPECT_EQ(-1, CFileException().m_lOsError);
    EXPECT_EQ(CFileException::none, CFileException().m_cause);
    EXPECT_EQ(CArchiveException::none, CArchiveException().m_cause);
}

// Deliberate: a simple exception is one object for the process, so throwing for want of memory
// needs none, and Delete leaves it as it is.
TEST(CException, SimpleExceptionsAreOneObjectForTheProcess) {
    const CUserException* thrown[2] = {};
    for (const CUserException*& one : thrown) {
        try {
            AfxThrowUserException();
        } catch (CUserException* exception) {
            exception->Delete();
            one = exception;
        }
    }
    EXPECT_EQ(thrown[0], thrown[1]);
    EXPECT_EQ(RUNTIME_CLASS(CUserException), thrown[0]->GetRuntimeClass());
}

TEST(CException, HeapExceptionsAreNewEachTime) {
    const CException* first = nullptr;
    try {
        AfxThrowArchiveException(CArchiveException::badClass, nullptr);
    } catch (CArchiveException* outer) {
        first = outer;
        try {
            AfxThrowArchiveException(CArchiveException::badClass, nullptr);
        } catch (CArchiveException* inner) {
            EXPECT_NE(first, inner);
            inner->Delete();
        }
        outer->Delete();
    }
}

TEST(CException, BaseHasNoMessage) {
    char buffer[8] = "before";
    UINT helpContext = 7;
    EXPECT_FALSE(CException(FALSE).GetErrorMessage(buffer, sizeof(buffer), &helpContext));
    EXPECT_STREQ("", buffer);
    EXPECT_EQ(0U, helpContext);
}

TEST(CException, MessagesNameTheFileAndTheReason) {
    EXPECT_EQ("The archive 'a.doc' failed: its content ends too early.",
              MessageOf(CArchiveException(CArchiveException::endOfFile, "a.doc")));
    EXPECT_EQ("The archive failed: its content ends too early.",
              MessageOf(CArchiveException(CArchiveException::endOfFile)));
    EXPECT_EQ("The file 'a.doc' failed: the disk is full.",
              MessageOf(CFileException(CFileException::diskFull, ENOSPC, "a.doc")));
    EXPECT_EQ("The operation was cancelled.", MessageOf(CUserException(FALSE)));
    EXPECT_EQ("There is not enough memory.", MessageOf(CMemoryException(FALSE)));
    EXPECT_EQ("The operation is not supported.", MessageOf(CNotSupportedException(FALSE)));
    EXPECT_EQ("An argument is not valid.", MessageOf(CInvalidArgException(FALSE)));
    EXPECT_EQ("A resource was not found.", MessageOf(CResourceException(FALSE)));
}

class EveryArchiveCause : public ::testing::TestWithParam<int> {};
TEST_P(EveryArchiveCause, HasAMessageOfItsOwn) {
    const std::string message = MessageOf(CArchiveException(GetParam()));
    EXPECT_NE(MessageOf(CArchiveException(999)), message);
    EXPECT_NE(MessageOf(CArchiveException(GetParam() == 0 ? 2 : 0)), message);
}
INSTANTIATE_TEST_SUITE_P(CArchiveException, EveryArchiveCause,
                         ::testing::Values(0, 2, 3, 4, 5, 6, 7));

class EveryFileCause : public ::testing::TestWithParam<int> {};
TEST_P(EveryFileCause, HasAMessageOfItsOwn) {
    const std::string message = MessageOf(CFileException(GetParam()));
    EXPECT_NE(MessageOf(CFileException(999)), message);
    EXPECT_NE(MessageOf(CFileException(GetParam() == 0 ? 2 : 0)), message);
}
INSTANTIATE_TEST_SUITE_P(CFileException, EveryFileCause,
                         ::testing::Values(0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14));

TEST(CException, MessagesAreCutToFit) {
    char buffer[6] = {'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_TRUE(CUserException(FALSE).GetErrorMessage(buffer, 4));
    EXPECT_STREQ("The", buffer);
    EXPECT_EQ('x', buffer[4]);
    EXPECT_TRUE(CUserException(FALSE).GetErrorMessage(buffer, 1));
    EXPECT_STREQ("", buffer);
    EXPECT_FALSE(CUserException(FALSE).GetErrorMessage(buffer, 0));
    EXPECT_FALSE(CUserException(FALSE).GetErrorMessage(nullptr, 4));
}

TEST(CException, ReportErrorWritesOneLine) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(IDOK, CUserException(FALSE).ReportError());
    EXPECT_EQ(IDOK, CException(FALSE).ReportError());
    EXPECT_EQ("The operation was cancelled.\nAn error occurred.\n",
              ::testing::internal::GetCapturedStderr());
}

struct ErrnoCase {
    int errorNumber;
    int cause;
};

class ErrorNumbers : public ::testing::TestWithParam<ErrnoCase> {};
TEST_P(ErrorNumbers, HaveTheirCause) {
    EXPECT_EQ(GetParam().cause, CFileException::ErrnoToException(GetParam().errorNumber));
#if !defined(_WIN32)
    EXPECT_EQ(GetParam().cause, CFileException::OsErrorToException(GetParam().errorNumber));
#endif
}
INSTANTIATE_TEST_SUITE_P(CFileException, ErrorNumbers,
                         ::testing::Values(ErrnoCase{0, CFileException::none},
                                           ErrnoCase{ENOENT, CFileException::fileNotFound},
                                           ErrnoCase{ENOTDIR, CFileException::badPath},
                                           ErrnoCase{EACCES, CFileException::accessDenied},
                                           ErrnoCase{EPERM, CFileException::accessDenied},
                                           ErrnoCase{EROFS, CFileException::accessDenied},
                                           ErrnoCase{EISDIR, CFileException::accessDenied},
                                           ErrnoCase{EMFILE, CFileException::tooManyOpenFiles},
                                           ErrnoCase{ENFILE, CFileException::tooManyOpenFiles},
                                           ErrnoCase{EBADF, CFileException::invalidFile},
                                           ErrnoCase{ENOSPC, CFileException::diskFull},
                                           ErrnoCase{EDQUOT, CFileException::diskFull},
                                           ErrnoCase{EFBIG, CFileException::diskFull},
                                           ErrnoCase{EIO, CFileException::hardIO},
                                           ErrnoCase{EBUSY, CFileException::sharingViolation},
                                           ErrnoCase{ETXTBSY, CFileException::sharingViolation},
                                           ErrnoCase{EDOM, CFileException::genericException},
                                           ErrnoCase{-1, CFileException::genericException}));

TEST(CException, ThrowErrnoThrowsTheCause) {
    EXPECT_EQ(FileFailure(CFileException::diskFull, "a.doc"),
              ThrownBy([] { CFileException::ThrowErrno(ENOSPC, "a.doc"); }));
    EXPECT_EQ(FileFailure(CFileException::genericException),
              ThrownBy([] { CFileException::ThrowErrno(EDOM); }));
    EXPECT_EQ(Thrown(), ThrownBy([] { CFileException::ThrowErrno(0, "a.doc"); }));
}

TEST(CException, ThrowOsErrorThrowsTheCause) {
#if !defined(_WIN32)
    EXPECT_EQ(FileFailure(CFileException::hardIO, "a.doc"),
              ThrownBy([] { CFileException::ThrowOsError(EIO, "a.doc"); }));
#endif
    EXPECT_EQ(Thrown(), ThrownBy([] { CFileException::ThrowOsError(0); }));
}

}  // namespace
