// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The numbers of the language's errors, by what each says (see errorText). A script reads them in
/// Err.Number and tests for them, so they never change.
namespace vbscript::errors {

inline constexpr int invalidCall = 5;
inline constexpr int overflow = 6;
inline constexpr int outOfMemory = 7;
inline constexpr int subscriptOutOfRange = 9;
inline constexpr int arrayLocked = 10;
inline constexpr int divisionByZero = 11;
inline constexpr int typeMismatch = 13;
inline constexpr int outOfStringSpace = 14;
inline constexpr int cannotPerform = 17;
inline constexpr int outOfStack = 28;
inline constexpr int internal = 51;
inline constexpr int badFileName = 52;
inline constexpr int fileNotFound = 53;
inline constexpr int badFileMode = 54;
inline constexpr int fileExists = 58;
inline constexpr int diskFull = 61;
inline constexpr int inputPastEnd = 62;
inline constexpr int tooManyFiles = 67;
inline constexpr int permissionDenied = 70;
inline constexpr int pathNotFound = 76;
inline constexpr int objectNotSet = 91;
inline constexpr int forNotInitialized = 92;
inline constexpr int invalidNull = 94;
inline constexpr int objectRequired = 424;
inline constexpr int cannotCreate = 429;
inline constexpr int noSuchMember = 438;
inline constexpr int noSuchLocale = 447;
inline constexpr int wrongArguments = 450;
inline constexpr int notACollection = 451;
inline constexpr int keyExists = 457;
inline constexpr int invalidPicture = 481;
inline constexpr int undefined = 500;
inline constexpr int illegalAssignment = 501;
inline constexpr int unqualified = 505;
inline constexpr int classNotDefined = 506;
inline constexpr int textTooLarge = 1001;
inline constexpr int syntax = 1002;
inline constexpr int leftParenExpected = 1005;
inline constexpr int rightParenExpected = 1006;
inline constexpr int rightBracketExpected = 1007;
inline constexpr int identifierExpected = 1010;
inline constexpr int equalExpected = 1011;
inline constexpr int ifExpected = 1012;
inline constexpr int toExpected = 1013;
inline constexpr int endExpected = 1014;
inline constexpr int functionExpected = 1015;
inline constexpr int subExpected = 1016;
inline constexpr int thenExpected = 1017;
inline constexpr int wendExpected = 1018;
inline constexpr int loopExpected = 1019;
inline constexpr int nextExpected = 1020;
inline constexpr int caseExpected = 1021;
inline constexpr int selectExpected = 1022;
inline constexpr int expressionExpected = 1023;
inline constexpr int statementExpected = 1024;
inline constexpr int endOfStatementExpected = 1025;
inline constexpr int integerExpected = 1026;
inline constexpr int whileUntilOrEndExpected = 1028;
inline constexpr int withExpected = 1029;
inline constexpr int identifierTooLong = 1030;
inline constexpr int invalidNumber = 1031;
inline constexpr int invalidCharacter = 1032;
inline constexpr int unterminatedString = 1033;
inline constexpr int invalidMe = 1037;
inline constexpr int loopWithoutDo = 1038;
inline constexpr int invalidExit = 1039;
inline constexpr int invalidLoopVariable = 1040;
inline constexpr int nameRedefined = 1041;
inline constexpr int mustBeginLine = 1042;
inline constexpr int parenthesesOfSub = 1044;
inline constexpr int literalExpected = 1045;
inline constexpr int inExpected = 1046;
inline constexpr int classExpected = 1047;
inline constexpr int outsideClass = 1048;
inline constexpr int accessorExpected = 1049;
inline constexpr int propertyExpected = 1050;
inline constexpr int accessorArguments = 1051;
inline constexpr int secondDefault = 1052;
inline constexpr int initializeArguments = 1053;
inline constexpr int setterArguments = 1054;
inline constexpr int unexpectedNext = 1055;
inline constexpr int defaultNeedsPublic = 1057;
inline constexpr int defaultOnGetOnly = 1058;
inline constexpr int patternSyntax = 5017;
inline constexpr int unexpectedQuantifier = 5018;
inline constexpr int patternBracketExpected = 5019;
inline constexpr int patternParenExpected = 5020;
inline constexpr int invalidCharacterRange = 5021;
inline constexpr int elementNotFound = 32811;

} // namespace vbscript::errors
