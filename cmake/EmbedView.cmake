# Makes one page of the parts of a view and turns it into a C++ source: cmake -DSOURCE=folder -DOUTPUT=file -P this.
# The scripts are modules that browsers and Node load as they are; in the page they share one, so that their imports and
# exports are left out. They come in the order in which they need each other.
set(scripts codec grid text colours plot spectrum slice dataset panels main)

set(script "")
foreach(name IN LISTS scripts)
  file(READ "${SOURCE}/${name}.js" part)
  string(REGEX REPLACE "(^|\n)import [^;]*;" "" part "${part}")
  string(REGEX REPLACE "(^|\n)export " "\\1" part "${part}")
  string(APPEND script "${part}")
endforeach()
file(READ "${SOURCE}/page.css" style)
file(READ "${SOURCE}/page.html" page)
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@SCRIPT@" "${script}" page "${page}")

# Bytes rather than a literal, of which compilers limit the length.
file(WRITE "${OUTPUT}.html" "${page}")
file(READ "${OUTPUT}.html" bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
file(WRITE "${OUTPUT}" "#include \"view/PageText.h\"

static const char text[] = {${bytes}};

std::string_view PageText() {
    return {text, sizeof text};
}
")
