;; Shows that Emacs with eglot, set up as in docs/editors.md, gets answers from `kelwhich lsp'. Run in a copy of the
;; example.
(require 'eglot)
(require 'flymake)
(setq eglot-autoreconnect nil)
(defvar root default-directory)

(defun check (what holds)
  "Wait until HOLDS returns something, and return it."
  (let ((deadline (+ (float-time) 20)) (result nil))
    (while (and (not (setq result (funcall holds))) (< (float-time) deadline))
      (accept-process-output nil 0.05))
    (princ (format "%s: %s\n" (if result "ok" "NOT") what))
    (or result (kill-emacs 1))))

(defun server () (eglot-current-server))
(defun run (command)
  (let ((default-directory root)) (call-process "sh" nil nil nil "-c" command)))
(defun connect () (apply #'eglot--connect (eglot--guess-contact)))

(find-file "mine/program.vk")
(insert "é😀 = wave(legacy) + su")
(connect)
(check "the server manages the buffer" #'server)

(goto-char (point-min))
(search-forward "wav")
(let* ((answer (jsonrpc-request (server) :textDocument/hover (eglot--TextDocumentPositionParams)))
       (text (eglot--hover-info (plist-get answer :contents) (plist-get answer :range))))
  (check "hover shows the candidates of wave"
         (lambda () (and (string-match-p "mine/wave\\.vk" text) (string-match-p "1 before 2: 1 is the user's own" text))))
  (princ (concat text "\n")))

(goto-char (point-max))
(check "completion offers sum"
       (lambda () (let ((capf (eglot-completion-at-point)))
                    (member "sum" (mapcar #'substring-no-properties (all-completions "su" (nth 2 capf)))))))

(defun listed (command &rest words)
  "The files that COMMAND lists when it is called with WORDS, in the order of their groups."
  (save-window-excursion
    (let ((inhibit-message t)) (apply command words))
    (with-current-buffer "*xref*"
      (mapcar (lambda (file) (file-relative-name (expand-file-name file root) root))
              (seq-remove (lambda (line) (string-match-p "^\\( *[0-9]+:.*\\)?$" line))
                          (split-string (buffer-string) "\n"))))))
(goto-char (point-min))
(search-forward "wav")
(let ((files (listed #'eglot-find-declaration)))
  (check (format "declaration lists all candidates: %s" files)
         (lambda () (equal files '("mine/wave.vk" "host/kel/wave.vk" "host/library/signal/wave.vk")))))
(let ((files (listed #'xref-find-apropos "ARE")))
  (check (format "workspace symbols lists what contains are: %s" files)
         (lambda () (equal files '("mine/@Shape/area.vk" "host/library/signal/area.vk")))))

(goto-char (point-min))
(search-forward "wav")
(xref-find-definitions (xref-backend-identifier-at-point 'eglot))
(check "definition goes to mine/wave.vk"
       (lambda () (string-suffix-p "mine/wave.vk" (buffer-file-name (window-buffer)))))

(find-file (expand-file-name "host/library/data/combine.vk" root))
(check "the server manages it, too" #'server)
(flymake-start)
(defun warnings ()
  (seq-filter (lambda (text) (string-match-p "hidden by" text))
              (mapcar #'flymake-diagnostic-text (flymake-diagnostics))))
(check "a definition that nothing is wrong with has no warning" (lambda () (not (warnings))))
(run "touch mine/combine.vk")
(check "a file that hides it, made by the shell, is a warning" #'warnings)
(princ (format "%s\n" (car (warnings))))
(run "rm mine/combine.vk")
(check "which vanishes with the file" (lambda () (not (warnings))))
(eglot-shutdown (server))
