# Makes a source file of what a document shows in a language, "c", "cpp" or "python": a block with
# includes or imports as it stands, and of every other one a function that knows what the guide says
# such pieces know.

$0 == "```" language { inside = 1; line = NR + 1; block = ""; next }
/^```$/ && inside {
    inside = 0
    place = "#line " line " \"" FILENAME "\"\n"
    if (block ~ /#include/)
        print place block
    else if (block ~ /^import /)
        print block
    else
        print "void Piece" ++pieces "([[maybe_unused]] const std::wstring& url, " \
              "[[maybe_unused]] const std::wstring& id, " \
              "[[maybe_unused]] WebRequestFactory& requests) {\n" place block "}"
    next
}
inside { block = block $0 "\n" }
END { if (block == "") exit 1 }
