// The pieces of a JUnit XML file shared by the batch and the analyze JUnit writers: one test
// suite with its counts, and test cases that passed, failed or could not run.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct JunitSuite {
    std::string_view name;
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    double seconds = 0.0;
};

enum class JunitOutcome { passed, failure, error };

struct JunitCase {
    std::string_view classname;
    std::string_view name;
    double seconds = 0.0;
    JunitOutcome outcome = JunitOutcome::passed;
    std::string_view message; // the <failure> or <error> message attribute
    std::string_view details; // the <failure> or <error> text
};

// The XML declaration, <testsuites> and the <testsuite> start tag.
void junit_open(std::string& out, const JunitSuite& suite);
void junit_case(std::string& out, const JunitCase& test);
void junit_close(std::string& out);
