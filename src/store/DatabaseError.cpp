#include "store/DatabaseError.h"

#include <utility>

namespace zelnor {

DatabaseError DatabaseError::openFailed(std::string path, int code) {
  const auto description = "无法打开数据库 " + path + "，错误码：" + std::to_string(code);
  return {Case::openFailed, code, std::move(path), /*index=*/0, description};
}

DatabaseError DatabaseError::execFailed(std::string sql, std::string message, int code) {
  return {Case::execFailed, code, std::move(sql), /*index=*/0,
          "SQL 执行失败：" + std::move(message)};
}

DatabaseError DatabaseError::prepareFailed(std::string sql, int code) {
  const auto description = "SQL 编译失败 (code=" + std::to_string(code) + ")：" + sql;
  return {Case::prepareFailed, code, std::move(sql), /*index=*/0, description};
}

DatabaseError DatabaseError::stepFailed(int code) {
  return {
      Case::stepFailed, code, {}, /*index=*/0, "SQL 执行步骤失败，错误码：" + std::to_string(code)};
}

DatabaseError DatabaseError::bindFailed(int index, int code) {
  return {Case::bindFailed,
          code,
          {},
          index,
          "参数绑定失败 index=" + std::to_string(index) + "，错误码：" + std::to_string(code)};
}

}  // namespace zelnor
