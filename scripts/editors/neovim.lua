-- Shows that Neovim, with the set-up of docs/editors.md, gets answers from `kelwhich lsp`. Run in a copy of the example.
local function wait(what, holds)
  local isThere = vim.wait(20000, holds, 20)
  print((isThere and "ok: " or "NOT: ") .. what .. "\n")
  if not isThere then vim.cmd("cquit 1") end
end

local function place() return vim.fn.expand("%:.") .. " " .. vim.fn.line(".") end
local function diagnostics()
  return table.concat(vim.tbl_map(function(found) return found.code .. ": " .. found.message end, vim.diagnostic.get(0)), "\n")
end

vim.cmd("edit mine/program.vk") -- is not there: a new document
vim.api.nvim_buf_set_lines(0, 0, -1, true, { "é😀 = wave(legacy) + su" })
wait("the client is attached", function()
  local _, client = next(vim.lsp.buf_get_clients(0))
  return client ~= nil and client.initialized
end)

vim.fn.cursor(1, 12)
vim.cmd("normal K")
local text
wait("hover shows the candidates of wave", function()
  for _, window in ipairs(vim.api.nvim_list_wins()) do
    if vim.api.nvim_win_get_config(window).relative ~= "" then
      text = table.concat(vim.api.nvim_buf_get_lines(vim.api.nvim_win_get_buf(window), 0, -1, true), "\n")
    end
  end
  return text ~= nil and text:find("mine/wave.vk", 1, true) and text:find("1 before 2: 1 is the user's own", 1, true)
end)
print(text .. "\n")

local answers = vim.lsp.buf_request_sync(0, "textDocument/completion", {
  textDocument = vim.lsp.util.make_text_document_params(),
  position = { line = 0, character = #"é😀 = wave(legacy) + su" - 3 }, -- in UTF-16
}, 20000)
local _, answer = next(answers)
local words = vim.tbl_map(function(item) return item.word end, vim.lsp.util.text_document_completion_list_to_complete_items(answer.result, "su"))
wait("completion offers sum: " .. table.concat(words, " "), function() return vim.tbl_contains(words, "sum") end)

-- The files of the quickfix list, once there is one with this title.
local function listed(title)
  local list = vim.fn.getqflist({ title = true, items = true })
  if not list.title:find(title, 1, true) then return "" end
  return table.concat(vim.tbl_map(function(item)
    return vim.fn.fnamemodify(vim.fn.bufname(item.bufnr), ":.") .. " "
  end, list.items))
end

vim.cmd("normal gD")
wait("declaration lists all candidates", function() -- which Neovim sorts
  return listed("LSP locations") == "host/kel/wave.vk host/library/signal/wave.vk mine/wave.vk "
end)
vim.cmd("cclose")
wait("and goes to the preferred one", function() return place() == "mine/wave.vk 1" end)
vim.cmd("edit mine/program.vk")
vim.lsp.buf.workspace_symbol("ARE")
wait("workspace symbols lists what contains are", function()
  return listed("Symbols") == "mine/@Shape/area.vk host/library/signal/area.vk "
end)

vim.cmd("cclose")
vim.fn.cursor(1, 12)
vim.cmd("normal gd")
wait("definition goes to mine/wave.vk", function() return place() == "mine/wave.vk 1" end)

vim.cmd("edit! host/library/data/combine.vk")
local before
wait("a definition that nothing is wrong with has no warning", function()
  before = diagnostics()
  return not before:find("hidden", 1, true)
end)
vim.fn.system("touch mine/combine.vk")
wait("a file that hides it, made by the shell, is a warning", function() return diagnostics():find("hidden", 1, true) end)
print(diagnostics() .. "\n")
vim.fn.system("rm mine/combine.vk")
wait("which vanishes with the file", function() return diagnostics() == before end)

local _, client = next(vim.lsp.buf_get_clients(0))
client.stop()
wait("the server ends", function() return client.is_stopped() end)
vim.cmd("qall!")
