# Makes a source file of what a document shows in a language, "c", "cpp" or "python". A block with
# includes or imports stands as it is. Of every other one a function is made, which knows what the
# document says that such pieces know. With program=N only the Nth program is taken, and its pieces.

$0 == "```" language { inside = 1; line = NR + 1; block = ""; next }
/^```$/ && inside {
    inside = 0
    if (block ~ /#include|^import /) {
        ++programs
        piece = block ~ /brevint\/client.h/ ? client : classes
    }
    if (program && program != programs)
        next
    place = language == "python" ? "" : "#line " line " \"" FILENAME "\"\n"
    if (block ~ /#include|^import /)
        print place block
    else
        print "void Piece" ++pieces piece "{\n" place block "}"
    found = 1
    next
}
inside { block = block $0 "\n" }
BEGIN {
    client = "([[maybe_unused]] brevint::Client& client, [[maybe_unused]] const brevint::Item& item)"
    classes = "([[maybe_unused]] const std::wstring& url, [[maybe_unused]] const std::wstring& id, " \
              "[[maybe_unused]] WebRequestFactory& requests)"
}
END { if (!found) exit 1 }
