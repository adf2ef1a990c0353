// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// The words that the engine itself knows, so that switches can name them. Keywords come first:
// the lexer tells them from names by their number.
// clang-format off
#define VBS_KEYWORDS(X)                                                                            \
    X(And) X(ByRef) X(ByVal) X(Call) X(Case) X(Class) X(Const) X(Dim) X(Do) X(Each) X(Else)        \
    X(ElseIf) X(Empty) X(End) X(Eqv) X(Erase) X(Exit) X(False) X(For) X(Function) X(GoTo) X(If)    \
    X(Imp) X(In) X(Is) X(Let) X(Loop) X(Me) X(Mod) X(New) X(Next) X(Not) X(Nothing) X(Null)        \
    X(On) X(Option) X(Or) X(Private) X(Public) X(ReDim) X(Resume) X(Select) X(Set) X(Stop)         \
    X(Sub) X(Then) X(To) X(True) X(Until) X(Wend) X(While) X(With) X(Xor)

#define VBS_NAMES(X)                                                                               \
    X(Default) X(Error) X(Explicit) X(Preserve) X(Property) X(Get) X(Step) X(Rem) X(Randomize)     \
    X(Execute) X(ExecuteGlobal) X(Eval) X(Array) X(Err) X(Class_Initialize) X(Class_Terminate) X(RegExp)    \
    X(Number) X(Description) X(Source) X(HelpFile) X(HelpContext) X(Clear) X(Raise) X(Pattern)     \
    X(Global) X(IgnoreCase) X(Multiline) X(Test) X(Replace) X(Count) X(Item) X(Value)              \
    X(FirstIndex) X(Length) X(SubMatches) X(Add) X(Exists) X(Remove) X(RemoveAll) X(Keys)          \
    X(Items) X(Key) X(CompareMode) X(FileExists) X(FolderExists) X(CreateFolder)                   \
    X(OpenTextFile) X(CreateTextFile) X(BuildPath) X(GetParentFolderName) X(GetFileName)           \
    X(GetBaseName) X(GetExtensionName) X(GetAbsolutePathName) X(DeleteFile) X(DeleteFolder)        \
    X(CopyFile) X(MoveFile) X(GetFile) X(GetFolder) X(ReadLine) X(ReadAll) X(Read) X(Skip) X(SkipLine) X(Write)            \
    X(WriteLine) X(WriteBlankLines) X(AtEndOfStream) X(AtEndOfLine) X(Line) X(Column) X(Close)    \
    X(Files) X(SubFolders) X(Name) X(Path) X(ShortName) X(ShortPath) X(ParentFolder) X(Drive)      \
    X(Size) X(Attributes) X(Type) X(DateCreated) X(DateLastAccessed) X(DateLastModified) X(Copy)   \
    X(Move) X(Delete) X(OpenAsTextStream) X(IsRootFolder)
// clang-format on

namespace vbscript {

#define VBS_WORD(w) w,
enum class Word : std::uint32_t {
    None,
    VBS_KEYWORDS(VBS_WORD) LastKeyword = Xor,
    VBS_NAMES(VBS_WORD)
};
#undef VBS_WORD

} // namespace vbscript
