# Makes a source file of the C++ that a document shows: a block with a main as it stands, and of every
# other one a function that knows what the guide says such pieces know.

/^```cpp$/ { inside = 1; line = NR + 1; block = ""; next }
/^```$/ && inside {
    inside = 0
    place = "#line " line " \"" FILENAME "\"\n"
    if (block ~ /int main/)
        print place block
    else
        print "void Piece" ++pieces "([[maybe_unused]] const std::wstring& url, " \
              "[[maybe_unused]] const std::wstring& id, " \
              "[[maybe_unused]] WebRequestFactory& requests) {\n" place block "}"
    next
}
inside { block = block $0 "\n" }
END { if (block == "") exit 1 }
