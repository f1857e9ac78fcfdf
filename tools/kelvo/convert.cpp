#include "convert.h"

#include "session.h"
#include "written_file.h"

namespace kelvo::command {

void convert(const std::string& input, const std::string& output) {
  Session session;
  session.show_on(stdout);
  session.read(input);
  write_file(session, output);
}

}  // namespace kelvo::command
